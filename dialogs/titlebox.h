#pragma once

#include <QPlainTextEdit>

/// A box for the text of one title. What it cannot show, such as a lone line feed, stays in
/// the text until somebody types. Of a text that is too long to be drawn at once only the
/// beginning is shown, and it cannot be changed here.
class TitleBox : public QPlainTextEdit {
    Q_OBJECT

  public:
    using QPlainTextEdit::QPlainTextEdit;

    void Load(const QString& text);
    bool Loaded() const { return !m_loadedInBox.isNull(); }
    /// All of the text is shown.
    bool Whole() const { return !isReadOnly(); }
    /// The title's text, its lines joined by carriage return + line feed.
    QString Text() const;

  private:
    QString m_loadedText;
    QString m_loadedInBox;
};
