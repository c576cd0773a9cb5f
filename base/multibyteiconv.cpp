#include "base/multibyte.h"

#include "base/utf8.h"

#include <algorithm>
#include <cerrno>

#include <iconv.h>

namespace {

constexpr char32_t PrivateUse = 0xF700;
constexpr std::size_t LongestCharacter = 8;

class Converter {
  public:
    Converter(const char* to, const char* from)
        : m_handle(iconv_open(to, from)) {}
    ~Converter() {
        if (Valid())
            iconv_close(m_handle);
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    bool Valid() const {
        // NOLINTNEXTLINE(performance-no-int-to-ptr): the interface's own way to say "none"
        return m_handle != reinterpret_cast<iconv_t>(-1);
    }

    /// Nothing unless all of it can be converted.
    std::optional<std::string> Convert(std::string_view text) const {
        iconv(m_handle, nullptr, nullptr, nullptr, nullptr);
        std::string out(text.size() + text.size() / 2 + 16, '\0');
        std::string in(text);
        char* from = in.data();
        std::size_t fromLeft = in.size();
        std::size_t done = 0;
        // At last what the converter holds back.
        for (bool last = false; !last;) {
            last = fromLeft == 0;
            char* to = out.data() + done;
            std::size_t toLeft = out.size() - done;
            const std::size_t result = last ? iconv(m_handle, nullptr, nullptr, &to, &toLeft)
                                            : iconv(m_handle, &from, &fromLeft, &to, &toLeft);
            done = out.size() - toLeft;
            if (result != static_cast<std::size_t>(-1))
                continue;
            if (errno != E2BIG)
                return std::nullopt;
            last = false;
            out.resize(out.size() * 2);
        }
        out.resize(done);
        return out;
    }

  private:
    iconv_t m_handle;
};

class IconvMultiByte : public MultiByte {
  public:
    explicit IconvMultiByte(const std::string& name)
        : m_toUtf8("UTF-8", name.c_str())
        , m_fromUtf8(name.c_str(), "UTF-8") {}

    bool Valid() const { return m_toUtf8.Valid() && m_fromUtf8.Valid(); }

    std::string ToUtf8(std::string_view bytes) const override {
        if (const auto whole = ComingBack(bytes))
            return *whole;
        std::string text;
        while (!bytes.empty()) {
            std::size_t length = 1;
            std::optional<std::string> character;
            for (; length <= std::min(LongestCharacter, bytes.size()); ++length) {
                character = ComingBack(bytes.substr(0, length));
                if (character)
                    break;
            }
            if (!character) {
                length = 1;
                const auto byte = static_cast<unsigned char>(bytes.front());
                AppendUtf8(text, byte < 0x80 ? byte : PrivateUse + byte);
            } else {
                text += *character;
            }
            bytes.remove_prefix(length);
        }
        return text;
    }

    std::optional<std::string> FromUtf8(std::string_view utf8) const override {
        std::string bytes;
        std::size_t begin = 0;
        for (std::size_t at = 0; at <= utf8.size();) {
            const std::size_t here = at;
            const char32_t character =
                at < utf8.size() ? NextCodePoint(utf8, at) : PrivateUse + 0x80;
            if (here == utf8.size())
                ++at;
            if (character < PrivateUse + 0x80 || character > PrivateUse + 0xFF)
                continue;
            const auto part = m_fromUtf8.Convert(utf8.substr(begin, here - begin));
            if (!part)
                return std::nullopt;
            bytes += *part;
            if (here < utf8.size())
                bytes += static_cast<char>(character - PrivateUse);
            begin = at;
        }
        return bytes;
    }

  private:
    /// Nothing when other bytes would come back.
    std::optional<std::string> ComingBack(std::string_view bytes) const {
        auto text = m_toUtf8.Convert(bytes);
        if (!text || m_fromUtf8.Convert(*text) != bytes)
            return std::nullopt;
        return text;
    }

    Converter m_toUtf8;
    Converter m_fromUtf8;
};

} // namespace

std::shared_ptr<const MultiByte> MultiByte::Open(const std::string& name) {
    auto encoding = std::make_shared<const IconvMultiByte>(name);
    return encoding->Valid() ? encoding : nullptr;
}
