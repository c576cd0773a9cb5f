#include "mainwindow/panelcontrols.h"

#include <QGridLayout>
#include <QTimer>

QLabel* MakeLabel(QWidget* panel, const char* name, const QString& caption) {
    return Named(new QLabel(caption, panel), name);
}

QPushButton* MakeButton(QWidget* panel, const char* name, const QString& caption,
                        const QString& toolTip) {
    auto* button = Named(new QPushButton(caption, panel), name, {}, toolTip);
    button->setAutoDefault(false);
    return button;
}

QPushButton* MakeBrowseButton(QWidget* panel, const char* name, const QString& toolTip) {
    QPushButton* button = MakeButton(panel, name, QStringLiteral("..."), toolTip);
    button->setAccessibleName(toolTip);
    return button;
}

QTimer* MakeTimer(QObject* owner, const char* name, int interval) {
    auto* timer = new QTimer(owner);
    timer->setObjectName(QString::fromLatin1(name));
    timer->setInterval(interval);
    return timer;
}

void FitTime(QLineEdit* box) {
    constexpr int frame = 12;
    box->setMinimumWidth(box->fontMetrics().horizontalAdvance(QStringLiteral("00:00:00,000")) +
                         frame);
}

int CaptionWidth(const QPushButton* button) {
    constexpr int frame = 16;
    return button->fontMetrics().horizontalAdvance(button->text()) + frame;
}

QGridLayout* MakePanelGrid(QWidget* panel, int leftMargin, int rightMargin) {
    panel->setAutoFillBackground(true);
    auto* grid = new QGridLayout(panel);
    grid->setContentsMargins(leftMargin, PanelMargin, rightMargin, PanelMargin);
    grid->setSpacing(PanelGap);
    return grid;
}
