#pragma once

#include <QPlainTextEdit>

/// The box for a title's text in place. It lies over its row and grows downward
/// with its lines; all keys are its own while it has the focus.
class LabelEditor : public QPlainTextEdit {
    Q_OBJECT

  public:
    explicit LabelEditor(QWidget* parent);

    void Load(const QString& text);
    /// The text, its lines joined as titles join them.
    QString Text() const;
    /// Over this cell.
    void Place(const QRect& cell);

  protected:
    bool event(QEvent* event) override;

  private:
    void Grow();

    QString m_loadedText;
    QString m_loadedInBox;
    QRect m_cell;
};
