#include "dialogs/titlebox.h"

#include "base/shorttext.h"

namespace {

/// Inside the box, lines are parted by separators of Unicode.
QString JoinedLines(const QString& rawBoxText) {
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

} // namespace

void TitleBox::Load(const QString& text) {
    m_loadedText = text;
    const std::string whole = text.toStdString();
    const std::string shown = ShortText(whole);
    setReadOnly(shown.size() != whole.size());
    setPlainText(Whole() ? text : QString::fromStdString(shown));
    if (!Whole())
        setToolTip(tr("Too long to be edited here. Only its beginning is shown; the text stays "
                      "whole."));
    m_loadedInBox = document()->toRawText();
}

QString TitleBox::Text() const {
    const QString inBox = document()->toRawText();
    return inBox == m_loadedInBox ? m_loadedText : JoinedLines(inBox);
}
