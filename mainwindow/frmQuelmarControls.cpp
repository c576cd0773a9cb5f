#include "mainwindow/frmQuelmar.h"

#include "mainwindow/toolicons.h"
#include "mainwindow/transportstrip.h"
#include "platform/updown.h"
#include "player/mediaplayercontrol.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTextDocument>
#include <QVBoxLayout>

namespace {

constexpr int PanelMargin = 8;
constexpr int Gap = 6;
/// The panels' design widths: side by side they fit the narrowest window.
constexpr int FilePanelWidth = 286;
constexpr int DisplayPanelWidth = 378;
constexpr int SubtitleLines = 2;
constexpr int LittleButtonWidth = 28;
constexpr int ShortestCommand = 56;
constexpr int ToolButtonHeight = 24;
/// Label, box, room, button, sign and box of the display panel's lower rows.
constexpr int ColumnCount = 6;

template <typename Control>
Control* Named(Control* control, const char* name, const QString& accessibleName = {},
               const QString& toolTip = {}) {
    control->setObjectName(QString::fromLatin1(name));
    if (!accessibleName.isEmpty())
        control->setAccessibleName(accessibleName);
    control->setToolTip(toolTip);
    return control;
}

QLabel* Label(QWidget* panel, const char* name, const QString& caption) {
    return Named(new QLabel(caption, panel), name);
}

QPushButton* Button(QWidget* panel, const char* name, const QString& caption,
                    const QString& toolTip) {
    auto* button = Named(new QPushButton(caption, panel), name, {}, toolTip);
    button->setAutoDefault(false);
    return button;
}

QPushButton* BrowseButton(QWidget* panel, const char* name, const QString& toolTip) {
    QPushButton* button = Button(panel, name, QStringLiteral("..."), toolTip);
    button->setAccessibleName(toolTip);
    button->setFixedWidth(LittleButtonWidth);
    return button;
}

QPushButton* ToolButton(QWidget* panel, const char* name, const QString& accessibleName,
                        const QString& toolTip) {
    QPushButton* button = Button(panel, name, {}, toolTip);
    button->setAccessibleName(accessibleName);
    button->setIconSize({ToolIconSide, ToolIconSide});
    button->setFixedSize(LittleButtonWidth + 2, ToolButtonHeight);
    button->setEnabled(false);
    return button;
}

QPlainTextEdit* SubtitleBox(QWidget* panel, const char* name, const QString& accessibleName,
                            const QString& toolTip) {
    auto* box = Named(new QPlainTextEdit(panel), name, accessibleName, toolTip);
    box->setReadOnly(true);
    box->setTabChangesFocus(true);
    box->setUndoRedoEnabled(false);
    box->document()->setDocumentMargin(2);
    return box;
}

/// A read-only box of a time.
QLineEdit* TimeBox(QWidget* panel, const char* name, const QString& accessibleName,
                   const QString& toolTip) {
    return Named(new QLineEdit(panel), name, accessibleName, toolTip);
}

void FitTime(QLineEdit* box) {
    constexpr int frame = 12;
    box->setMinimumWidth(box->fontMetrics().horizontalAdvance(QStringLiteral("00:00:00,000")) +
                         frame);
}

/// The styles' own least width is larger than short captions need.
int CaptionWidth(const QPushButton* button) {
    constexpr int frame = 16;
    return button->fontMetrics().horizontalAdvance(button->text()) + frame;
}

/// From the box's edge to its first line.
int TextInset(const QPlainTextEdit* box) {
    return box->frameWidth() + qRound(box->document()->documentMargin());
}

void FitLines(QPlainTextEdit* box) {
    box->setMinimumHeight(SubtitleLines * box->fontMetrics().lineSpacing() + 2 * TextInset(box) +
                          1);
}

/// The panels lie side by side and share part of the margin between them.
QGridLayout* PanelLayout(QWidget* panel, int leftMargin, int rightMargin) {
    panel->setAutoFillBackground(true);
    auto* grid = new QGridLayout(panel);
    grid->setContentsMargins(leftMargin, PanelMargin, rightMargin, PanelMargin);
    grid->setSpacing(Gap);
    return grid;
}

} // namespace

void frmQuelmar::MakeControls() {
    MP = Named(new MediaPlayerControl(*m_player, this), "MP", tr("Media player"),
               QStringLiteral("Right-click for a player options menu, or move the mouse out to "
                              "get rid of this text"));
    PB = Named(new QWidget(this), "PB");
    PB2 = Named(new QWidget(this), "PB2");
    LayOutFilePanel();
    LayOutDisplayPanel();
    IMGL = new StripPictures(this);
    IMGL->setObjectName(QStringLiteral("IMGL"));
    picButtons = Named(new TransportStrip(*IMGL, this), "picButtons", tr("Transport buttons"));
    DrawToolIcons();
    SizePanels();
}

void frmQuelmar::LayOutFilePanel() {
    Label2 = Label(PB, "Label2", QStringLiteral("Media:"));
    txtAVI = Named(new QLineEdit(PB), "txtAVI", tr("Media file"),
                   QStringLiteral("Enter the media (AVI, MPG...) file path here, or click the "
                                  "button to browse"));
    cmdBrowseAVI = BrowseButton(PB, "cmdBrowseAVI", QStringLiteral("Browse for the media file"));
    Label3 = Label(PB, "Label3", QStringLiteral("Subtitle:"));
    txtSRT = Named(new QLineEdit(PB), "txtSRT", tr("Subtitle file"),
                   QStringLiteral("Enter the subtitle (SRT, SMI, SUB) file path here, or click "
                                  "the little button to browse"));
    cmdBrowseSRT = BrowseButton(PB, "cmdBrowseSRT", QStringLiteral("Browse for the subtitle file"));
    Label6 = Label(PB, "Label6", QStringLiteral("When playing"));
    optShow = Named(new QRadioButton(QStringLiteral("View subtitles"), PB), "optShow", {},
                    QStringLiteral("Show the subtitles like they would occur in a player"));
    optPosition =
        Named(new QRadioButton(QStringLiteral("Position Subtitles"), PB), "optPosition", {},
              QStringLiteral("Show each subtitle ahead of time, and allow for placing "
                             "it by pressing a key"));
    optShow->setChecked(true);
    cmdEdit = Button(PB, "cmdEdit", QStringLiteral("Edit Subtitles"),
                     QStringLiteral("Open the subtitle list for editing individual titles or "
                                    "groups"));
    cmdSave = Button(PB, "cmdSave", QStringLiteral("Save Subtitles"),
                     QStringLiteral("Save the current version of the subtitles to a file"));
    cmdExit = Button(PB, "cmdExit", QStringLiteral("Exit"), QStringLiteral("Exit Quelmar"));
    cmdEdit->setEnabled(false);
    cmdSave->setEnabled(false);
    Label2->setBuddy(txtAVI);
    Label3->setBuddy(txtSRT);

    QGridLayout* grid = PanelLayout(PB, PanelMargin, PanelMargin / 2);
    grid->addWidget(Label2, 0, 0);
    grid->addWidget(txtAVI, 0, 1);
    grid->addWidget(cmdBrowseAVI, 0, 2);
    grid->addWidget(Label3, 1, 0);
    grid->addWidget(txtSRT, 1, 1);
    grid->addWidget(cmdBrowseSRT, 1, 2);
    auto* modes = new QGridLayout;
    modes->setSpacing(Gap);
    modes->setHorizontalSpacing(2 * Gap);
    modes->addWidget(Label6, 0, 0);
    modes->addWidget(optShow, 0, 1);
    modes->addWidget(optPosition, 1, 1);
    modes->setColumnStretch(1, 1);
    grid->addLayout(modes, 2, 0, 1, 3);
    grid->setRowStretch(3, 1);
    auto* commands = new QHBoxLayout;
    commands->setSpacing(Gap);
    commands->addWidget(cmdEdit);
    commands->addWidget(cmdSave);
    commands->addWidget(cmdExit);
    grid->addLayout(commands, 4, 0, 1, 3);
}

void frmQuelmar::LayOutDisplayPanel() {
    txtSubtitle = SubtitleBox(PB2, "txtSubtitle", tr("Subtitle"),
                              QStringLiteral("Here the subtitles will be shown during playback or "
                                             "positioning"));
    Label5 = Label(PB2, "Label5", QStringLiteral("Next Subtitle:"));
    txtNextSubtitle = SubtitleBox(PB2, "txtNextSubtitle", tr("Next subtitle"), {});
    Label1 = Label(PB2, "Label1", QStringLiteral("Time:"));
    txtTime = TimeBox(PB2, "txtTime", tr("Time"),
                      QStringLiteral("Shows current playback position and allows jumping to an "
                                     "exact point in the media"));
    UDTime = Named(new UpDown(PB2), "UDTime", tr("Move in the media"));
    Label4 = Label(PB2, "Label4", QStringLiteral("Key:"));
    txtKey = Named(new QLineEdit(QStringLiteral("Space"), PB2), "txtKey", tr("Positioning key"),
                   QStringLiteral("Click here to choose another key for title positioning"));
    txtKey->setReadOnly(true);
    txtKey->setCursor(Qt::PointingHandCursor);
    for (QWidget* control : {static_cast<QWidget*>(Label4), static_cast<QWidget*>(txtKey)}) {
        QSizePolicy policy = control->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        control->setSizePolicy(policy);
    }
    cmdBlue =
        ToolButton(PB2, "cmdBlue", tr("Blue mark"),
                   tr("Mark the current position as the new start of the first marked title"));
    cmdGreen =
        ToolButton(PB2, "cmdGreen", tr("Green mark"),
                   tr("Mark the current position as the new start of the second marked title"));
    cmdAdjust = ToolButton(PB2, "cmdAdjust", tr("Adjust"),
                           tr("Stretch the selected titles between the blue and the green mark"));
    cmdSelStart = Button(PB2, "cmdSelStart", QStringLiteral("Sel. Start"),
                         QStringLiteral("Set playback start to the current slider position"));
    Label7 = Label(PB2, "Label7", QStringLiteral(">>"));
    txtSelStart = TimeBox(PB2, "txtSelStart", tr("Selection start"),
                          QStringLiteral("Shows the current playback start point"));
    cmdSelEnd = Button(PB2, "cmdSelEnd", QStringLiteral("Sel. End"),
                       QStringLiteral("Set playback end to the current slider position"));
    Label8 = Label(PB2, "Label8", QStringLiteral(">>"));
    txtSelEnd = TimeBox(PB2, "txtSelEnd", tr("Selection end"),
                        QStringLiteral("Shows the current playback end point"));
    txtSelStart->setReadOnly(true);
    txtSelEnd->setReadOnly(true);
    txtTime->setEnabled(false);
    UDTime->setEnabled(false);
    Label1->setBuddy(txtTime);
    Label4->setBuddy(txtKey);

    QGridLayout* grid = PanelLayout(PB2, PanelMargin, PanelMargin);
    auto* marks = new QVBoxLayout;
    marks->setSpacing(2);
    for (QPushButton* button : {cmdBlue, cmdGreen, cmdAdjust})
        marks->addWidget(button);
    marks->addStretch();
    auto* titles = new QGridLayout;
    titles->setSpacing(Gap);
    titles->addWidget(txtSubtitle, 0, 0, 1, 2);
    titles->addWidget(Label5, 1, 0, Qt::AlignTop);
    titles->addWidget(txtNextSubtitle, 1, 1);
    titles->addLayout(marks, 0, 2, 2, 1);
    titles->setRowStretch(0, 1);
    grid->addLayout(titles, 0, 0, 1, ColumnCount);
    grid->setRowStretch(0, 1);

    auto* time = new QHBoxLayout;
    time->setSpacing(0);
    time->addWidget(txtTime);
    time->addWidget(UDTime);
    grid->addWidget(Label1, 1, 0);
    grid->addLayout(time, 1, 1);
    grid->addWidget(Label4, 2, 0);
    grid->addWidget(txtKey, 2, 1);
    grid->setColumnStretch(2, 1);
    grid->addWidget(cmdSelStart, 1, 3);
    grid->addWidget(Label7, 1, 4);
    grid->addWidget(txtSelStart, 1, 5);
    grid->addWidget(cmdSelEnd, 2, 3);
    grid->addWidget(Label8, 2, 4);
    grid->addWidget(txtSelEnd, 2, 5);
}

void frmQuelmar::SizePanels() {
    for (QLineEdit* box : {txtTime, txtSelStart, txtSelEnd})
        FitTime(box);
    const int selection = qMax(CaptionWidth(cmdSelStart), CaptionWidth(cmdSelEnd));
    cmdSelStart->setFixedWidth(selection);
    cmdSelEnd->setFixedWidth(selection);
    cmdExit->setFixedWidth(qMax(CaptionWidth(cmdExit), ShortestCommand));
    for (QPlainTextEdit* box : {txtSubtitle, txtNextSubtitle})
        FitLines(box);
    // In line with the first of the two lines beside it.
    Label5->setContentsMargins(0, TextInset(txtNextSubtitle), 0, 0);
    const QSize files = PB->layout()->minimumSize();
    const QSize display = PB2->layout()->minimumSize();
    const int height = qMax(files.height(), display.height());
    PB->resize(qMax(FilePanelWidth, files.width()), height);
    PB2->resize(qMax(DisplayPanelWidth, display.width()), height);
}

void frmQuelmar::DrawToolIcons() {
    cmdBlue->setIcon(MakeToolIcon(ToolIcon::BlueFlag, palette()));
    cmdGreen->setIcon(MakeToolIcon(ToolIcon::GreenFlag, palette()));
    cmdAdjust->setIcon(MakeToolIcon(ToolIcon::Stretch, palette()));
}
