#include "listeditor/frmList.h"

#include "dialogs/placement.h"
#include "listeditor/frmFind.h"
#include "listeditor/rowdelegate.h"
#include "listeditor/rowmodel.h"
#include "listeditor/titleview.h"
#include "model/times.h"
#include "platform/commondialogs.h"
#include "platform/errorgate.h"
#include "platform/fontscale.h"
#include "platform/titletext.h"
#include "platform/twips.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollBar>
#include <QToolBar>

#include <utility>

namespace {

constexpr std::int32_t DesignWidth = 13500;
constexpr std::int32_t DesignHeight = 8700;
constexpr std::int32_t MinimumWidth = 3000;
constexpr std::int32_t MinimumListHeight = 1000;

} // namespace

frmList::frmList(EditorHost& host, QWidget* parent)
    : QMainWindow(parent, Qt::Window)
    , LV(new TitleView(this))
    , m_host(host)
    , m_rows(new RowModel(this))
    , m_actions(
          *this, Commands(), [this](const ListCommand& command) { RunByKey(command); },
          [this](const ListCommand& command) { Run(command); }) {
    TB = m_actions.TB();
    setObjectName("frmList");
    setWindowTitle("Subtitle Editor");
    setAttribute(Qt::WA_DeleteOnClose);
    LayOut();
    ConnectList();
    Form_Load();
    m_connection = document().Subscribe(
        [this](const Change& change) { Guarded([&] { Document_Change(change); }); });
}

frmList::~frmList() {
    // An editor in a row outlives this by a little.
    m_delegate->disconnect(this);
}

void frmList::LayOut() {
    m_rows->MarkOf = [this](std::int32_t row) {
        return row == FirstMark ? 1 : row == SecondMark ? 2 : 0;
    };
    LV->setObjectName("LV");
    LV->setModel(m_rows);
    m_delegate = new RowDelegate(LV);
    LV->setItemDelegate(m_delegate);
    setCentralWidget(LV);
    PlaceForFirstTime();
    LV->setContextMenuPolicy(Qt::ActionsContextMenu);
    LV->addActions(m_actions.ContextEntries());
    UpdateColours();
    LV->setFocus();
}

/// Larger with a larger font; on the screen, and not over the film.
void frmList::PlaceForFirstTime() {
    constexpr QSize Frame(8, 40);
    Form_Resize();
    const QSize design(qMax(Scaled(ToPixels(DesignWidth), *this), TB->sizeHint().width()),
                       Scaled(ToPixels(DesignHeight), *this));
    const QRect available = screen()->availableGeometry();
    const QRect film = m_host.FilmPlace();
    if (film.isEmpty()) {
        resize(design.boundedTo(available.size() - Frame));
        if (parentWidget() != nullptr)
            PlaceBeside(*this, *parentWidget()->window());
        return KeepOnScreen(*this);
    }
    // Its menu and the table's header are as high as a row each.
    const auto withRows = [&](int rows) {
        return QSize(ToPixels(DesignWidth) / 2,
                     TB->sizeHint().height() +
                         (rows + 2) * LV->verticalHeader()->defaultSectionSize()) +
               Frame;
    };
    const QRect window =
        parentWidget() != nullptr ? parentWidget()->window()->frameGeometry() : film;
    const QSize outer = design + Frame;
    // Better over the main window's lower part than over the picture.
    const struct {
        QRect beside;
        QSize least;
    } tries[] = {{window, outer.boundedTo(withRows(5) * 1.5)},
                 {film, withRows(5)},
                 {film, withRows(2)},
                 {m_host.PicturePlace(), withRows(2)}};
    QRect place;
    for (const auto& wish : tries) {
        place = BesideFilm(outer, wish.least, wish.beside, available);
        if (!place.intersects(wish.beside))
            break;
    }
    move(place.topLeft());
    resize(place.size() - Frame);
}

void frmList::ConnectList() {
    LV->installEventFilter(this);
    connect(LV, &TitleView::clicked, this,
            [this](const QModelIndex& index) { Guarded([&] { LV_ItemClick(index.row() + 1); }); });
    connect(LV, &TitleView::doubleClicked, this, [this] { Guarded([this] { LV_DblClick(); }); });
    connect(LV->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &frmList::SelectionChanged);
    connect(m_rows, &RowModel::modelReset, this, &frmList::SelectionChanged);
    connect(m_delegate, &RowDelegate::Typed, this, &frmList::LV_Typing);
    connect(m_delegate, &RowDelegate::TypingEnded, this,
            [this] { document().Typing(std::nullopt); });
    connect(m_rows, &RowModel::LabelEdited, this, [this](std::int32_t row, const QString& text) {
        Guarded([&] { LV_AfterLabelEdit(row, text); });
    });
}

void frmList::Form_Load() {
    m_host.EditButtonsEnabled(false);
    LoadSettings();
    UpdateVersions();
    m_number = document().Number();
    UndoPossible(Subt().UndoCount() > 0);
    Form_Resize();
    LoadList();
    document().ListWindowOpen = true;
    MarkDocumentEnds();
    SelectionChanged();
}

void frmList::MarkDocumentEnds() {
    document().Marks(Subt().StartTime(1), Subt().StartTime(RowCount()));
    MarkEnds();
}

void frmList::Form_Resize() {
    setMinimumSize(ToPixels(MinimumWidth), TB->sizeHint().height() + ToPixels(MinimumListHeight));
}

void frmList::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    if (std::exchange(m_shown, true))
        return;
    const QModelIndex shown = m_rows->index(m_host.ShownTitle() - 1, RowModel::Text);
    LV->selectionModel()->setCurrentIndex(shown, QItemSelectionModel::NoUpdate);
    LV->scrollTo(shown, TitleView::PositionAtCenter);
    LV->LetColumnsFollow();
}

void frmList::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        UpdateColours();
    // The constructor of the base class sends some, too.
    if (event->type() == QEvent::FontChange && TB != nullptr) {
        m_actions.FitIcons(fontMetrics());
        Form_Resize();
    }
}

void frmList::UpdateColours() {
    m_rows->SetDark(LV->palette().color(QPalette::Base).lightness() < 128);
    m_rows->ShowAll();
}

void frmList::Form_QueryUnload() {
    if (!isMinimized() && !isMaximized() && !isFullScreen())
        return;
    // The window manager answers when it likes; what is saved is the normal window.
    constexpr int LongestWait = 500;
    const QRect normal = normalGeometry();
    showNormal();
    QElapsedTimer waited;
    waited.start();
    do {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents, 20);
    } while (size() != normal.size() && waited.elapsed() < LongestWait);
    if (size() != normal.size())
        setGeometry(normal);
}

void frmList::Form_Unload() {
    if (m_find != nullptr)
        m_find->cmdExit_Click();
    document().Typing(std::nullopt);
    document().ListWindowOpen = false;
    SaveSettings();
    m_host.EditButtonsEnabled(true);
}

void frmList::closeEvent(QCloseEvent* event) {
    if (!std::exchange(m_unloaded, true)) {
        Form_QueryUnload();
        Form_Unload();
    }
    QMainWindow::closeEvent(event);
}

void frmList::LoadList() {
    const bool sameCount = m_rows->Count() == Subt().Count();
    const QPoint scrolled(LV->horizontalScrollBar()->value(), LV->verticalScrollBar()->value());
    m_rows->Load(Subt());
    if (!sameCount) {
        MarkEnds();
        LV->horizontalScrollBar()->setValue(scrolled.x());
        LV->verticalScrollBar()->setValue(scrolled.y());
    }
    UpdateDelete();
    if (const std::int32_t item = SelectedItem(); item > 0)
        m_host.MediaPosition(Subt().StartTime(item));
}

void frmList::Document_Change(const Change& change) {
    UpdateVersions();
    if (m_ownChange)
        return;
    switch (change.kind) {
    case Change::Kind::Times:
    case Change::Kind::Text:
        return RowsChanged(change);
    case Change::Kind::Inserted:
    case Change::Kind::Deleted:
        return LoadList();
    case Change::Kind::Replaced:
        return std::exchange(m_number, document().Number()) == document().Number()
                   ? LoadList()
                   : AnotherDocument();
    case Change::Kind::Marks:
    case Change::Kind::Saved:
        return;
    }
}

void frmList::RowsChanged(const Change& change) {
    for (std::int32_t i = change.first; i <= change.last; ++i) {
        if (change.kind == Change::Kind::Text)
            m_rows->SetText(i, Subt().Text(i));
        m_rows->SetStart(i, Subt().StartTime(i));
        m_rows->SetDuration(i, RoundTime(Subt().EndTime(i) - Subt().StartTime(i)));
    }
    m_rows->Show(change.first, change.last);
}

void frmList::AnotherDocument() {
    LV->clearSelection();
    for (std::int32_t row = 1; row <= RowCount(); ++row)
        m_rows->SetColour(row, RowColour::Plain);
    LoadList();
    UndoPossible(Subt().UndoCount() > 0);
    MarkDocumentEnds();
    LV->selectionModel()->setCurrentIndex(m_rows->index(0, RowModel::Text),
                                          QItemSelectionModel::NoUpdate);
    LV->scrollToTop();
}

void frmList::UndoPossible(bool possible) {
    m_actions.SetEnabled(Needs::UndoSteps, possible);
}

void frmList::UpdateDelete() {
    m_actions.SetEnabled(Needs::TwoRows, RowCount() >= 2);
}

void frmList::mnuViewFont_Click() {
    if (const auto font = ChooseFont(this, LV->font()))
        LV->SetListFont(*font);
    LV->MakeRoomForTimes();
}

void frmList::mnuViewToolbar_Click() {
    TB->setVisible(m_actions.Entry("mnuViewToolbar")->isChecked());
    Form_Resize();
}

QFont frmList::ListFont() const {
    return LV->font();
}

std::int32_t frmList::RowCount() const {
    return m_rows->Count();
}

QString frmList::RowText(std::int32_t row) const {
    return m_rows->CellText(row, RowModel::Text);
}

QString frmList::RowStart(std::int32_t row) const {
    return m_rows->CellText(row, RowModel::Start);
}

QString frmList::RowDuration(std::int32_t row) const {
    return m_rows->CellText(row, RowModel::Duration);
}

void frmList::SetRow(std::int32_t row, const QString& text, double start, double duration) {
    m_rows->SetText(row, TitleFromQt(text));
    m_rows->SetStart(row, start);
    m_rows->SetDuration(row, duration);
    m_rows->Show(row, row);
}
