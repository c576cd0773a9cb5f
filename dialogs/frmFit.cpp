#include "dialogs/frmFit.h"

#include "dialogs/fitgraph.h"
#include "dialogs/fitjob.h"
#include "dialogs/fitsources.h"
#include "dialogs/fitwords.h"
#include "dialogs/placement.h"
#include "model/step.h"
#include "model/subtitles.h"
#include "platform/errorgate.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QTreeWidget>

#include <algorithm>

namespace {

/// "Listen" begins that long before the title and plays this much of the film.
constexpr double BeforeTitle = 1.5;
constexpr double ListeningTime = 5;

enum Column { PieceColumn, MoveColumn, RateColumn, SureColumn, Columns };

template <typename CONTROL, typename... ARGUMENTS>
CONTROL* Named(const char* name, ARGUMENTS&&... arguments) {
    auto* control = new CONTROL(std::forward<ARGUMENTS>(arguments)...);
    control->setObjectName(QString::fromLatin1(name));
    return control;
}

} // namespace

frmFit::frmFit(FitHost& host, FitSource source, QWidget* parent)
    : QDialog(parent)
    , lblVerdict(Named<QLabel>("lblVerdict", this))
    , prgFit(Named<QProgressBar>("prgFit", this))
    , picGraph(new FitGraph(this))
    , lstPieces(Named<QTreeWidget>("lstPieces", this))
    , optBefore(Named<QRadioButton>("optBefore", tr("&Before"), this))
    , optAfter(Named<QRadioButton>("optAfter", tr("&After"), this))
    , cmdListen(Named<QPushButton>("cmdListen", tr("&Listen"), this))
    , cmdFit(Named<QPushButton>("cmdFit", tr("&Fit"), this))
    , cmdCancel(Named<QPushButton>("cmdCancel", tr("Cancel"), this))
    , m_host(host)
    , m_present(TitlesToFit(host.FitTitles()))
    , m_titles(m_present) {
    setObjectName("frmFit");
    setWindowTitle(tr("Fit to %1").arg(QString::fromStdString(source.what)));
    setAttribute(Qt::WA_DeleteOnClose);
    LayOut();
    connect(lstPieces, &QTreeWidget::itemChanged, this,
            [this] { Guarded([this] { lstPieces_ItemChanged(); }); });
    connect(lstPieces, &QTreeWidget::currentItemChanged, this,
            [this] { Guarded([this] { lstPieces_CurrentChanged(); }); });
    connect(optAfter, &QRadioButton::toggled, this,
            [this] { Guarded([this] { optAfter_Toggled(); }); });
    connect(cmdListen, &QPushButton::clicked, this,
            [this] { Guarded([this] { cmdListen_Click(); }); });
    connect(cmdFit, &QPushButton::clicked, this, [this] { Guarded([this] { cmdFit_Click(); }); });
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    Form_Load();

    m_job = std::make_unique<FitJob>(std::move(source), m_titles, TakeAnchors());
    connect(m_job.get(), &FitJob::Progressed, this, &frmFit::JobProgressed);
    connect(m_job.get(), &FitJob::Finished, this, [this] { Guarded([this] { JobFinished(); }); });
}

frmFit::~frmFit() = default;

/// A title that was placed tells how far its neighbours have to go, if the fit knows where it
/// came from.
std::vector<FitAnchor> frmFit::TakeAnchors() {
    std::vector<FitAnchor> anchors;
    for (const KnownStarts::Known& known : m_host.PlacedTitles()) {
        FitTitle& title = m_titles[static_cast<std::size_t>(known.title - 1)];
        title.end += known.was - title.start;
        title.start = known.was;
        anchors.push_back({known.title, known.start});
    }
    const std::vector<FitAnchor> further = m_host.FitAnchors();
    anchors.insert(anchors.end(), further.begin(), further.end());
    return anchors;
}

std::vector<FitTimes> frmFit::Applied(const std::vector<bool>& chosen) const {
    std::vector<FitTimes> times = ApplyFit(m_titles, Result(), chosen);
    for (const KnownStarts::Known& known : m_host.PlacedTitles()) {
        const auto place = static_cast<std::size_t>(known.title - 1);
        times[place] = {m_present[place].start, m_present[place].end};
    }
    return times;
}

void frmFit::LayOut() {
    lblVerdict->setWordWrap(true);
    lblVerdict->setTextFormat(Qt::PlainText);
    lstPieces->setColumnCount(Columns);
    lstPieces->setHeaderLabels({tr("Titles"), tr("Moved"), tr("Pictures a second"), tr("Sure")});
    lstPieces->setRootIsDecorated(false);
    lstPieces->setUniformRowHeights(true);
    lstPieces->setAccessibleName(tr("Pieces"));
    lstPieces->header()->setStretchLastSection(false);
    lstPieces->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    lstPieces->header()->setSectionResizeMode(MoveColumn, QHeaderView::Stretch);
    lstPieces->setMaximumHeight(fontMetrics().height() * 9);
    cmdListen->setToolTip(tr("Plays five seconds around the least sure title of the piece"));
    optBefore->setToolTip(tr("Shows the titles where they are"));
    optAfter->setToolTip(tr("Shows the titles where they would come"));
    cmdFit->setToolTip(tr("Moves the titles of the ticked pieces"));
    for (QPushButton* button : {cmdListen, cmdFit, cmdCancel})
        button->setAutoDefault(false);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(new QLabel(tr("Show the times:"), this));
    buttons->addWidget(optBefore);
    buttons->addWidget(optAfter);
    buttons->addWidget(cmdListen);
    buttons->addStretch();
    buttons->addWidget(cmdFit);
    buttons->addWidget(cmdCancel);

    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(12, 12, 12, 12);
    rows->setSpacing(10);
    rows->addWidget(lblVerdict);
    rows->addWidget(prgFit);
    rows->addWidget(picGraph, 1);
    rows->addWidget(lstPieces);
    rows->addLayout(buttons);
}

void frmFit::Form_Load() {
    prgFit->setRange(0, 100);
    lblVerdict->setText(tr("Looking for the fit..."));
    optBefore->setChecked(true);
    for (QWidget* later : {static_cast<QWidget*>(optBefore), static_cast<QWidget*>(optAfter),
                           static_cast<QWidget*>(cmdListen), static_cast<QWidget*>(cmdFit)})
        later->setEnabled(false);
    PlaceBesideFilm();
    cmdCancel->setFocus();
}

/// What is proposed is to be seen and heard while this is open.
void frmFit::PlaceBesideFilm() {
    resize(sizeHint());
    const QRect film = m_host.FilmPlace();
    if (film.isEmpty())
        return KeepOnScreen(*this);
    constexpr QSize Frame(8, 40);
    const QRect place =
        BesideFilm(size() + Frame, minimumSizeHint() + Frame, film, screen()->availableGeometry());
    move(place.topLeft());
    resize(place.size() - Frame);
}

void frmFit::JobProgressed(const QString& phase, double done) {
    prgFit->setFormat(phase + QStringLiteral(" %p%"));
    prgFit->setValue(static_cast<int>(done * 100));
}

void frmFit::JobFinished() {
    prgFit->hide();
    if (!m_job->Why().isEmpty()) {
        lblVerdict->setText(m_job->Why());
        return;
    }
    m_found = true;
    lblVerdict->setText(QString::fromStdString(FitVerdictText(Result())));
    picGraph->Show(Result(), m_titles);
    FillPieces();
    optBefore->setEnabled(true);
    optAfter->setEnabled(true);
    if (Result().verdict == FitVerdict::Fitted)
        optAfter->setChecked(true);
    lstPieces_ItemChanged();
}

// A guess that is not to be trusted is never ticked unasked.
void frmFit::FillPieces() {
    m_filling = true;
    const bool trusted = Result().verdict == FitVerdict::Fitted;
    for (const FitPiece& piece : Result().pieces) {
        auto* row = new QTreeWidgetItem(lstPieces);
        row->setText(PieceColumn, QString::fromStdString(PieceTitlesText(piece)));
        row->setText(MoveColumn, QString::fromStdString(PieceMoveText(piece, m_titles)));
        row->setText(RateColumn, QString::fromStdString(PieceRateText(piece)));
        row->setText(SureColumn, QString::fromStdString(PercentText(piece.confidence)));
        row->setCheckState(PieceColumn, trusted ? Qt::Checked : Qt::Unchecked);
    }
    m_filling = false;
    if (lstPieces->topLevelItemCount() > 0)
        lstPieces->setCurrentItem(lstPieces->topLevelItem(0));
}

const Fit& frmFit::Result() const {
    return m_job->Result();
}

std::vector<bool> frmFit::ChosenPieces() const {
    std::vector<bool> chosen;
    for (int i = 0; i < lstPieces->topLevelItemCount(); ++i)
        chosen.push_back(lstPieces->topLevelItem(i)->checkState(PieceColumn) == Qt::Checked);
    return chosen;
}

bool frmFit::AnyChosen() const {
    const std::vector<bool> chosen = ChosenPieces();
    return std::find(chosen.begin(), chosen.end(), true) != chosen.end();
}

void frmFit::ShowPlaces() {
    if (!optAfter->isChecked())
        return m_host.ShowProposed({});
    std::vector<bool> shown = ChosenPieces();
    if (m_heard >= 0)
        shown[static_cast<std::size_t>(m_heard)] = true;
    if (std::find(shown.begin(), shown.end(), true) == shown.end())
        return m_host.ShowProposed({});
    m_host.ShowProposed(Applied(shown));
}

void frmFit::lstPieces_ItemChanged() {
    if (m_filling || !m_found)
        return;
    m_heard = -1;
    picGraph->Chosen(ChosenPieces());
    cmdFit->setEnabled(AnyChosen());
    lstPieces_CurrentChanged();
    ShowPlaces();
}

void frmFit::lstPieces_CurrentChanged() {
    cmdListen->setEnabled(m_found && lstPieces->currentItem() != nullptr);
}

void frmFit::optAfter_Toggled() {
    if (m_found)
        ShowPlaces();
}

void frmFit::cmdListen_Click() {
    const int piece = lstPieces->indexOfTopLevelItem(lstPieces->currentItem());
    const std::int32_t title = LeastSureTitle(Result(), piece);
    if (title == 0)
        return;
    m_heard = piece;
    ShowPlaces();
    const auto place = static_cast<std::size_t>(title - 1);
    const double start = optAfter->isChecked() ? Applied({})[place].start : m_present[place].start;
    const double from = std::max(0.0, start - BeforeTitle);
    m_host.Listen(from, from + ListeningTime);
}

void frmFit::cmdFit_Click() {
    const std::vector<FitTimes> times = Applied(ChosenPieces());
    const std::vector<std::int32_t> moved = MovedTitles(m_present, times);
    m_host.ShowProposed({});
    {
        SUBTITLES& titles = m_host.FitTitles();
        const Step step(titles, "Fit", Step::Undo::Emptied);
        for (const std::int32_t i : moved) {
            const FitTimes& time = times[static_cast<std::size_t>(i - 1)];
            titles.SetTimes(i, time.start, time.end);
        }
    }
    m_host.Fitted(moved);
    accept();
}

void frmFit::done(int result) {
    if (!m_ended) {
        m_ended = true;
        m_job.reset();
        m_host.ShowProposed({});
    }
    QDialog::done(result);
}
