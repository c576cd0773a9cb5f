#pragma once

#include "dialogs/titlebox.h"

/// The box for a title's text in place. It lies over its row and grows downward
/// with its lines; all keys are its own while it has the focus.
class LabelEditor : public TitleBox {
    Q_OBJECT

  public:
    explicit LabelEditor(QWidget* parent);

    void Load(const QString& text);
    /// Over this cell.
    void Place(const QRect& cell);

  protected:
    bool event(QEvent* event) override;

  private:
    void Grow();

    QRect m_cell;
};
