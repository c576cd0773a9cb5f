#include "platform/titletext.h"

#include "base/utf8.h"

namespace {

void Append(QString& shown, std::string_view text) {
    shown += QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

QString TitleToQt(std::string_view text) {
    QString shown;
    std::size_t at = 0;
    for (std::size_t half = FindHalf(text); half != std::string_view::npos;
         half = FindHalf(text, at)) {
        Append(shown, text.substr(at, half - at));
        at = half;
        shown += QChar(static_cast<char16_t>(NextCodePointOrHalf(text, at)));
    }
    Append(shown, text.substr(at));
    return shown;
}

std::string TitleFromQt(const QString& shown) {
    if (shown.isValidUtf16())
        return shown.toStdString();
    std::string text;
    for (qsizetype i = 0; i < shown.size(); ++i) {
        const char16_t unit = shown[i].unicode();
        const char16_t next = i + 1 < shown.size() ? shown[i + 1].unicode() : u'\0';
        const bool pair = IsHighHalf(unit) && IsLowHalf(next);
        AppendUtf8(text, pair ? JoinedHalves(unit, next) : unit);
        i += pair ? 1 : 0;
    }
    return text;
}
