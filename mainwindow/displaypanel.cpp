#include "mainwindow/displaypanel.h"

#include "base/shorttext.h"
#include "listeditor/frmList.h"
#include "mainwindow/handlers.h"
#include "mainwindow/panelcontrols.h"

#include <QGridLayout>
#include <QPlainTextEdit>
#include <QTextDocument>
#include <QTimer>
#include <QVBoxLayout>

#include <utility>

namespace {

/// The design width: beside the other panel it fits the narrowest window.
constexpr int PanelWidth = 398;
constexpr int SubtitleLines = 2;
constexpr int DisplayInterval = 50;
/// Label, box, room, button, sign and box of the lower rows.
constexpr int ColumnCount = 6;
constexpr int RoomColumn = 2;
/// No more fits a picture that is to be seen behind it.
constexpr ShownText OnPicture{.lines = 8, .characters = 200};

QPlainTextEdit* SubtitleBox(QWidget* panel, const char* name, const QString& accessibleName,
                            const QString& toolTip) {
    auto* box = Named(new QPlainTextEdit(panel), name, accessibleName, toolTip);
    box->setReadOnly(true);
    box->setTabChangesFocus(true);
    box->setUndoRedoEnabled(false);
    box->document()->setDocumentMargin(2);
    return box;
}

/// From the box's edge to its first line.
int TextInset(const QPlainTextEdit* box) {
    return box->frameWidth() + qRound(box->document()->documentMargin());
}

void FitLines(QPlainTextEdit* box) {
    box->setMinimumHeight(SubtitleLines * box->fontMetrics().lineSpacing() + 2 * TextInset(box) +
                          1);
}

/// A title's text as a box gives it back.
QString PlainLines(const std::string& text) {
    return QString::fromStdString(text)
        .replace(QLatin1String("\r\n"), QLatin1String("\n"))
        .replace(QLatin1Char('\r'), QLatin1Char('\n'));
}

} // namespace

DisplayPanel::DisplayPanel(MainState& state, QWidget* parent)
    : QWidget(parent)
    , m_state(state)
    , m_walker(state.document.Subt)
    , Timer1(MakeTimer(this, "Timer1", DisplayInterval))
    , txtSubtitle(SubtitleBox(this, "txtSubtitle", tr("Subtitle"),
                              QStringLiteral("Here the subtitles will be shown during playback or "
                                             "positioning")))
    , Label5(MakeLabel(this, "Label5", QStringLiteral("Next Subtitle:")))
    , txtNextSubtitle(SubtitleBox(this, "txtNextSubtitle", tr("Next subtitle"), {}))
    , m_time(*state.player, this)
    , Label4(MakeLabel(this, "Label4", QStringLiteral("Key:")))
    , txtKey(Named(new QLineEdit(QStringLiteral("Space"), this), "txtKey", tr("Positioning key"),
                   QStringLiteral("Click here to choose another key for title positioning")))
    , m_marks(state, this)
    , m_selection(*state.player, this) {
    setObjectName(QStringLiteral("PB2"));
    Timer1->setTimerType(Qt::PreciseTimer);
    txtKey->setReadOnly(true);
    txtKey->setCursor(Qt::PointingHandCursor);
    Label4->setBuddy(txtKey);
    for (QWidget* control : {static_cast<QWidget*>(Label4), static_cast<QWidget*>(txtKey)}) {
        QSizePolicy policy = control->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        control->setSizePolicy(policy);
    }
    LayOut();
    Mode(DisplayMode::View);
    On(Timer1, &QTimer::timeout, this, &DisplayPanel::Timer1_Timer);
    On(state.player.get(), &Player::PlayStateChange, this, &DisplayPanel::MP_PlayStateChange);
    On(state.player.get(), &Player::PositionChange, this, &DisplayPanel::MP_PositionChange);
    On(state.player.get(), &Player::ReadyStateChange, this, &DisplayPanel::MP_ReadyStateChange);
}

void DisplayPanel::LayOut() {
    QGridLayout* grid = MakePanelGrid(this, PanelMargin, PanelMargin);
    auto* titles = new QGridLayout;
    titles->setSpacing(PanelGap);
    titles->addWidget(txtSubtitle, 0, 0, 1, 2);
    titles->addWidget(Label5, 1, 0, Qt::AlignTop);
    titles->addWidget(txtNextSubtitle, 1, 1);
    titles->addLayout(m_marks.LayOut(), 0, 2, 2, 1);
    titles->setRowStretch(0, 1);
    grid->addLayout(titles, 0, 0, 1, ColumnCount);
    grid->setRowStretch(0, 1);
    grid->addWidget(m_time.Label1, 1, 0);
    grid->addLayout(m_time.LayOut(), 1, 1);
    grid->addWidget(Label4, 2, 0);
    grid->addWidget(txtKey, 2, 1);
    grid->setColumnStretch(RoomColumn, 1);
    m_selection.LayOut(*grid, 1, RoomColumn + 1);
}

QSize DisplayPanel::NeededSize() {
    FitTime(m_time.txtTime);
    m_selection.FitTexts();
    m_marks.FitFont();
    for (QPlainTextEdit* box : {txtSubtitle, txtNextSubtitle})
        FitLines(box);
    // In line with the first of the two lines beside it.
    Label5->setContentsMargins(0, TextInset(txtNextSubtitle), 0, 0);
    const QSize needed = layout()->minimumSize();
    return {qMax(PanelWidth, needed.width()), needed.height()};
}

void DisplayPanel::Mode(DisplayMode mode) {
    m_mode = mode;
    if (mode == DisplayMode::View)
        txtNextSubtitle->clear();
    if (m_state.mediaActive && mode == DisplayMode::View) {
        const double position = m_state.player->CurrentPosition();
        LocateCurrentTitle(position);
        TakeDownStale(position);
        ShowOnPicture(m_walker.IsOn(position));
    } else if (m_state.mediaActive) {
        Choose(CurrentTitle());
        ShowOnPicture(false);
    }
    Label4->setVisible(mode == DisplayMode::Position);
    txtKey->setVisible(mode == DisplayMode::Position);
}

void DisplayPanel::ShowInstead(SUBTITLES titles) {
    m_instead = std::move(titles);
    ShowOthers();
}

void DisplayPanel::ShowOwn() {
    if (!m_instead)
        return;
    m_instead.reset();
    ShowOthers();
}

void DisplayPanel::ShowOthers() {
    m_walker.Titles(Shown());
    if (!m_state.mediaActive)
        return;
    const double position = m_state.player->CurrentPosition();
    LocateCurrentTitle(position);
    TakeDownStale(position);
    ShowOnPicture(m_walker.IsOn(position));
    if (ShownMode() == DisplayMode::View)
        txtNextSubtitle->clear();
}

void DisplayPanel::MediaEnabled(bool enabled) {
    m_time.Enabled(enabled);
}

void DisplayPanel::LocateCurrentTitle(double position) {
    ShowTexts(m_walker.LocateCurrentTitle(position, ShownMode()));
}

void DisplayPanel::Advance() {
    ShowTexts(m_walker.Advance());
}

void DisplayPanel::Refresh() {
    if (m_state.mediaActive)
        MP_PositionChange(0, m_state.player->CurrentPosition());
}

void DisplayPanel::Choose(std::int32_t title) {
    ShowTexts(m_walker.Choose(title));
}

void DisplayPanel::TakeDownStale(double position) {
    const std::string& text = Shown().Text(CurrentTitle());
    if (ShownMode() == DisplayMode::View &&
        (!m_walker.IsOn(position) || txtSubtitle->toPlainText() != PlainLines(ShortText(text))))
        txtSubtitle->clear();
}

void DisplayPanel::ShowOnPicture(bool on) {
    if (frmList* list = m_state.OpenList())
        list->ShowPlaying(on && m_state.mediaActive ? CurrentTitle() : 0);
    const bool shown = on && ShownMode() == DisplayMode::View && m_state.mediaActive;
    const std::string& text = Shown().Text(CurrentTitle());
    emit TitleOnPicture(shown ? QString::fromStdString(ShortText(text, OnPicture)) : QString());
}

void DisplayPanel::ShowTexts(const DisplayTexts& texts) {
    if (texts.subtitle)
        txtSubtitle->setPlainText(QString::fromStdString(ShortText(*texts.subtitle)));
    if (texts.next)
        txtNextSubtitle->setPlainText(QString::fromStdString(ShortText(*texts.next)));
}

void DisplayPanel::MP_PlayStateChange(int /*oldState*/, int newState) {
    if (newState == Player::Stopped)
        emit Stopping(CurrentTitle());
    m_state.mediaActive = newState != Player::Stopped;
    const double position = m_state.player->CurrentPosition();
    LocateCurrentTitle(position);
    TakeDownStale(position);
    ShowOnPicture(m_walker.IsOn(position));
    // Where a stop leads is told right after it.
    if (newState != Player::Stopped)
        m_time.ShowTime(position);
    if (newState == Player::Playing) {
        m_sinceTick.start();
        Timer1->start();
    } else {
        Timer1->stop();
    }
    m_selection.Refresh();
    if (newState == Player::Stopped) {
        txtNextSubtitle->clear();
        txtSubtitle->clear();
    }
}

void DisplayPanel::MP_PositionChange(double /*oldPosition*/, double newPosition) {
    if (m_walker.TakeDown() || ShownMode() == DisplayMode::View)
        txtSubtitle->clear();
    m_time.ShowTime(newPosition);
    if (m_state.mediaActive)
        LocateCurrentTitle(newPosition);
    ShowOnPicture(m_walker.IsOn(newPosition));
}

void DisplayPanel::MP_ReadyStateChange(int /*readyState*/) {
    m_time.ShowTime(m_state.player->CurrentPosition());
    m_selection.Clear();
}

void DisplayPanel::Timer1_Timer() {
    const std::int32_t ticks = TicksDue(m_sinceTick.restart(), Timer1->interval());
    // The player may have stopped already, with the report still on its way.
    if (m_state.player->State() != Player::Playing)
        return;
    const double position = m_state.player->CurrentPosition();
    m_time.ShowTime(position);
    if (ShownMode() != DisplayMode::View)
        return;
    for (std::int32_t i = 0; i < ticks && WalkOn(position); ++i) {
    }
    ShowOnPicture(m_walker.TitleShown());
}

bool DisplayPanel::WalkOn(double position) {
    const SUBTITLES& titles = Shown();
    switch (m_walker.Tick(position)) {
    case DisplayWalker::Step::Appeared:
        txtSubtitle->setPlainText(QString::fromStdString(ShortText(titles.Text(CurrentTitle()))));
        return true;
    case DisplayWalker::Step::Ended:
        txtSubtitle->clear();
        // Past the last title there is nothing to follow.
        if (frmList* list = m_state.OpenList();
            list != nullptr && CurrentTitle() <= titles.Count() + 1)
            list->FollowTitle(CurrentTitle());
        return true;
    case DisplayWalker::Step::None:
        return false;
    }
    return false;
}
