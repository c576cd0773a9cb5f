#include "mainwindow/troubleline.h"

#include <QEvent>

TroubleLine::TroubleLine(QWidget* window)
    : QLabel(window) {
    setObjectName("lblTrouble");
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setMargin(6);
    setAutoFillBackground(true);
    // The colours of tool tips stand out, and can be read in every theme.
    setBackgroundRole(QPalette::ToolTipBase);
    setForegroundRole(QPalette::ToolTipText);
    hide();
    window->installEventFilter(this);
}

void TroubleLine::Say(const QString& trouble) {
    setText(trouble);
    setVisible(!trouble.isEmpty());
    FitWindow();
    raise();
}

void TroubleLine::FitWindow() {
    const int width = parentWidget()->width();
    setGeometry(0, 0, width, heightForWidth(width));
}

bool TroubleLine::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize && isVisible())
        FitWindow();
    return QLabel::eventFilter(watched, event);
}
