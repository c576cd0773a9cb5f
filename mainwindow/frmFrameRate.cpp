#include "mainwindow/frmFrameRate.h"

#include "dialogs/typedbox.h"
#include "editing/typed.h"
#include "mainwindow/handlers.h"
#include "model/numbers.h"
#include "model/times.h"
#include "platform/messageboxes.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr double OfferedRates[] = {23.976, 24, 25, 29.97, 30};
// Neither bound is a legal rate itself.
constexpr double LowerBound = 10;
constexpr double UpperBound = 50;

QString RateText(double rate) {
    return QString::fromStdString(NumberText(RoundTime(rate)));
}

std::optional<double> Rate(std::string_view text) {
    const std::optional<double> rate = TypedNumber(text);
    return rate && *rate > LowerBound && *rate < UpperBound ? rate : std::nullopt;
}

const TypedText LegalRate{"a frame rate",
                          "A number of frames a second between 10 and 50, such as 23.976", Rate};

} // namespace

frmFrameRate::frmFrameRate(Document& document, const KnownRates& known, QWidget* parent)
    : QDialog(parent)
    , m_document(document)
    , m_known(known)
    , cboFramerate(new QComboBox(this))
    , cmdOK(new QPushButton(tr("OK"), this))
    , cmdFilmRate(new QPushButton(tr("The &film has %1").arg(RateText(known.film)), this))
    , cmdFileRate(new QPushButton(tr("The fi&le names %1").arg(RateText(known.file)), this)) {
    setObjectName("frmFrameRate");
    setWindowTitle(tr("Micro-DVD Frame Rate"));
    setModal(true);
    cboFramerate->setObjectName("cboFramerate");
    cboFramerate->setEditable(true);
    cboFramerate->setInsertPolicy(QComboBox::NoInsert);
    // "2" is not yet 23.976, and Return means OK, not the end of a completion.
    cboFramerate->setCompleter(nullptr);
    cboFramerate->setAccessibleName(tr("Frame rate"));
    cboFramerate->setMinimumContentsLength(12);
    cmdOK->setObjectName("cmdOK");
    cmdOK->setToolTip(tr("Select the frame rate shown to the left"));
    cmdOK->setDefault(true);

    cmdFilmRate->setObjectName("cmdFilmRate");
    cmdFileRate->setObjectName("cmdFileRate");
    LayOut();
    On(cmdOK, &QPushButton::clicked, this, &frmFrameRate::cmdOK_Click);
    On(cmdFilmRate, &QPushButton::clicked, this, &frmFrameRate::cmdFilmRate_Click);
    On(cmdFileRate, &QPushButton::clicked, this, &frmFrameRate::cmdFileRate_Click);
    Form_Load();
    m_typed = std::make_unique<TypedBox>(cboFramerate->lineEdit(), LegalRate);
}

frmFrameRate::~frmFrameRate() = default;

void frmFrameRate::LayOut() {
    auto* row = new QHBoxLayout;
    row->setSpacing(12);
    row->addWidget(cboFramerate, 1);
    row->addWidget(cmdOK);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 16, 16, 16);
    layout->setSpacing(12);
    layout->addLayout(row);
    for (QPushButton* offer : {cmdFilmRate, cmdFileRate}) {
        const bool known = (offer == cmdFilmRate ? m_known.film : m_known.file) > 0;
        offer->setAutoDefault(false);
        offer->setToolTip(tr("Put this rate into the box above"));
        offer->setVisible(known);
        layout->addWidget(offer);
    }
    // The whole caption shows.
    setMinimumWidth(fontMetrics().horizontalAdvance(windowTitle()) + 160);
}

void frmFrameRate::Form_Load() {
    cboFramerate->clear();
    for (const double rate : OfferedRates)
        cboFramerate->addItem(RateText(rate));
    cboFramerate->setEditText(QString::fromStdString(NumberText(m_document.FrameRate)));
    cboFramerate->lineEdit()->selectAll();
}

void frmFrameRate::Take(double rate) {
    cboFramerate->setEditText(RateText(rate));
    cboFramerate->lineEdit()->selectAll();
    cboFramerate->setFocus();
}

void frmFrameRate::cmdFilmRate_Click() {
    Take(m_known.film);
}

void frmFrameRate::cmdFileRate_Click() {
    Take(m_known.file);
}

void frmFrameRate::cmdOK_Click() {
    const auto rate = m_typed->Value();
    if (!rate) {
        ShowMessage(this, tr("Illegal frame rate!"), MessageIcon::Exclamation);
        return;
    }
    m_document.FrameRate = *rate;
    accept();
}
