#include "platform/paths.h"

#include "base/utf8.h"

#include <QFile>

#include <algorithm>

namespace {

constexpr char16_t FirstByte = 0xEF80;
constexpr char16_t LastByte = 0xEFFF;
constexpr char16_t HighBytes = 0x80;

constexpr bool IsByte(QChar character) {
    return character.unicode() >= FirstByte && character.unicode() <= LastByte;
}

/// Valid, and nothing that `PathOf` would take for bytes.
bool IsPlain(const QByteArray& bytes) {
    return IsValidUtf8(
               std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size()))) &&
           !IsNoText(QString::fromUtf8(bytes));
}

/// How many bytes from there on are one character that stays itself; 0: the first is none.
qsizetype CharacterAt(const QByteArray& bytes, qsizetype at) {
    constexpr qsizetype longest = 4;
    for (qsizetype size = 1; size <= longest && at + size <= bytes.size(); ++size)
        if (IsPlain(bytes.mid(at, size)))
            return size;
    return 0;
}

} // namespace

bool IsNoText(const QString& name) {
    return std::any_of(name.begin(), name.end(), IsByte);
}

QString NameOfBytes(const QByteArray& bytes) {
    if (IsPlain(bytes))
        return QString::fromUtf8(bytes);
    QString name;
    for (qsizetype at = 0; at < bytes.size();) {
        const qsizetype size = CharacterAt(bytes, at);
        if (size > 0)
            name += QString::fromUtf8(bytes.mid(at, size));
        else
            name += QChar(static_cast<char16_t>(FirstByte - HighBytes +
                                                static_cast<unsigned char>(bytes[at])));
        at += std::max<qsizetype>(size, 1);
    }
    return name;
}

QString NameOf(const std::filesystem::path& file) {
#ifdef Q_OS_WIN
    return QString::fromStdWString(file.wstring());
#else
    return NameOfBytes(QByteArray::fromStdString(file.string()));
#endif
}

std::filesystem::path PathOf(const QString& name) {
#ifdef Q_OS_WIN
    return name.toStdWString();
#else
    if (!IsNoText(name))
        return QFile::encodeName(name).toStdString();
    QByteArray bytes;
    for (qsizetype at = 0; at < name.size();) {
        const qsizetype start = at;
        while (at < name.size() && !IsByte(name[at]))
            ++at;
        bytes += QFile::encodeName(name.mid(start, at - start));
        for (; at < name.size() && IsByte(name[at]); ++at)
            bytes += static_cast<char>(name[at].unicode() - FirstByte + HighBytes);
    }
    return bytes.toStdString();
#endif
}
