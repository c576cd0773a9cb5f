#include "dialogs/titletext.h"

QString TitleTextOf(const QString& rawBoxText) {
    QString text;
    text.reserve(rawBoxText.size() + 8);
    for (const QChar c : rawBoxText) {
        if (c == QChar::ParagraphSeparator || c == QChar::LineSeparator)
            text += QLatin1String("\r\n");
        else
            text += c;
    }
    return text;
}
