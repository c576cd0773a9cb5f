#include "formats/tags.h"

#include <array>
#include <cstring>
#include <span>

namespace {

constexpr std::string_view ItalicCode = "{y:i}";
constexpr std::string_view BoldCode = "{y:b}";
constexpr std::string_view EndCode = "{y}";

std::size_t CountOf(std::string_view text, std::string_view code) {
    std::size_t count = 0;
    for (std::size_t at = text.find(code); at != std::string_view::npos;
         at = text.find(code, at + code.size()))
        ++count;
    return count;
}

/// Works through the text once, from left to right. The result does not depend on
/// which {y:i} or {y:b} a round takes, only on whether one is left to take; so
/// they are counted beforehand, and the rounds follow the {y}s. A {y} that closes
/// nothing vanishes, and what stood on its two sides may then form a code anew.
class CodeConverter {
  public:
    CodeConverter(std::string_view text, OpenStyles& open, std::string& out)
        : m_text(text)
        , m_open(open)
        , m_out(out)
        , m_start(out.size())
        , m_italics(CountOf(text, ItalicCode))
        , m_bolds(CountOf(text, BoldCode)) {}

    void Run() {
        while (!m_text.empty()) {
            TakeUpToBrace();
            if (Take(ItalicCode))
                m_out += "<i>";
            else if (Take(BoldCode))
                m_out += "<b>";
            else if (Take(EndCode))
                EndStyles();
            else
                TakeCharacter();
        }
        // The rounds that are left find no {y} any more.
        m_open.italic = m_open.italic || m_italics > 0;
        m_open.bold = m_open.bold || m_bolds > 0;
    }

  private:
    void TakeUpToBrace() {
        const std::size_t brace = std::min(m_text.find('{'), m_text.size());
        m_out += m_text.substr(0, brace);
        m_text.remove_prefix(brace);
    }

    bool Take(std::string_view code) {
        if (!m_text.starts_with(code))
            return false;
        m_text.remove_prefix(code.size());
        return true;
    }

    void TakeCharacter() {
        if (m_text.empty())
            return;
        m_out += m_text.front();
        m_text.remove_prefix(1);
    }

    /// One round, with the {y} already taken.
    void EndStyles() {
        while (true) {
            StartStyles();
            if (m_open.italic || m_open.bold) {
                CloseOpenTags(m_open, m_out);
                return;
            }
            if (TakeFormed(ItalicCode)) {
                m_out += "<i>";
                ++m_italics;
                return;
            }
            if (TakeFormed(BoldCode)) {
                m_out += "<b>";
                ++m_bolds;
                return;
            }
            if (!TakeFormed(EndCode))
                return;
        }
    }

    void StartStyles() {
        if (m_italics > 0) {
            --m_italics;
            m_open.italic = true;
        }
        if (m_bolds > 0) {
            --m_bolds;
            m_open.bold = true;
        }
    }

    /// Takes a code that begins in what is done and goes on in what is to come.
    bool TakeFormed(std::string_view code) {
        const std::string_view done = std::string_view(m_out).substr(m_start);
        const std::size_t brace =
            done.substr(done.size() - std::min(done.size(), code.size() - 1)).rfind('{');
        if (brace == std::string_view::npos)
            return false;
        const std::size_t length = std::min(done.size(), code.size() - 1) - brace;
        if (!code.starts_with(done.substr(done.size() - length)) || !Take(code.substr(length)))
            return false;
        m_out.resize(m_out.size() - length);
        return true;
    }

    std::string_view m_text;
    OpenStyles& m_open;
    std::string& m_out;
    std::size_t m_start;
    std::size_t m_italics;
    std::size_t m_bolds;
};

struct Replacement {
    std::string_view from;
    std::string_view to;
};

constexpr std::array<Replacement, 5> MicroDvdReplacements{
    {{"\r\n", "|"}, {"<i>", "{y:i}"}, {"<b>", "{y:b}"}, {"</i>", "{y}"}, {"</b>", "{y}"}}};
constexpr std::array<Replacement, 1> SamiReplacements{{{"\r\n", "<br>"}}};

/// Replaces all at once: no replacement can form what another one looks for.
void Replace(std::string_view text, std::span<const Replacement> replacements, std::string& out) {
    std::size_t kept = 0;
    for (std::size_t at = 0; at < text.size();) {
        const Replacement* found = nullptr;
        if (text[at] == '\r' || text[at] == '<') {
            for (const Replacement& replacement : replacements) {
                if (text.substr(at).starts_with(replacement.from))
                    found = &replacement;
            }
        }
        if (found == nullptr) {
            ++at;
            continue;
        }
        out += text.substr(kept, at - kept);
        out += found->to;
        at += found->from.size();
        kept = at;
    }
    out += text.substr(kept);
}

/// Removes all occurrences from the part of the text that begins at the offset.
void RemoveAll(std::string& text, std::size_t start, std::string_view what) {
    std::size_t found = text.find(what, start);
    if (found == std::string::npos)
        return;
    std::size_t end = found;
    while (found != std::string::npos) {
        const std::size_t from = found + what.size();
        found = text.find(what, from);
        const std::size_t length = std::min(found, text.size()) - from;
        std::memmove(text.data() + end, text.data() + from, length);
        end += length;
    }
    text.resize(end);
}

} // namespace

void MicroDVDCodesToTags(std::string_view text, OpenStyles& open, std::string& out) {
    if (text.find("{y") == std::string_view::npos)
        out += text;
    else
        CodeConverter(text, open, out).Run();
}

void CloseOpenTags(OpenStyles& open, std::string& out) {
    if (open.italic)
        out += "</i>";
    if (open.bold)
        out += "</b>";
    open = {};
}

void TagsToMicroDVDCodes(std::string_view text, std::string& out) {
    Replace(text, MicroDvdReplacements, out);
}

void LineBreaksToTags(std::string_view text, std::string& out) {
    Replace(text, SamiReplacements, out);
}

void StripTags(std::string_view text, std::string& out) {
    const std::size_t start = out.size();
    out += text;
    if (text.find('<') == std::string_view::npos)
        return;
    for (const std::string_view tag : {"<i>", "<b>", "</i>", "</b>"})
        RemoveAll(out, start, tag);
}
