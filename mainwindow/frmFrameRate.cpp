#include "mainwindow/frmFrameRate.h"

#include "model/numbers.h"
#include "platform/errorgate.h"
#include "platform/messageboxes.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>

namespace {

constexpr double OfferedRates[] = {23.976, 24, 25, 29.97, 30};
// Neither bound is a legal rate itself.
constexpr double LowerBound = 10;
constexpr double UpperBound = 50;

QString RateText(double rate) {
    return QString::fromStdString(NumberText(rate));
}

} // namespace

frmFrameRate::frmFrameRate(Document& document, QWidget* parent)
    : QDialog(parent)
    , m_document(document)
    , cboFramerate(new QComboBox(this))
    , cmdOK(new QPushButton(tr("OK"), this)) {
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

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(16, 16, 16, 16);
    layout->setSpacing(12);
    layout->addWidget(cboFramerate, 1);
    layout->addWidget(cmdOK);
    // The whole caption shows.
    setMinimumWidth(fontMetrics().horizontalAdvance(windowTitle()) + 160);
    connect(cmdOK, &QPushButton::clicked, this, [this] { Guarded([this] { cmdOK_Click(); }); });
    Form_Load();
}

void frmFrameRate::Form_Load() {
    cboFramerate->clear();
    for (const double rate : OfferedRates)
        cboFramerate->addItem(RateText(rate));
    cboFramerate->setEditText(RateText(m_document.FrameRate));
    cboFramerate->lineEdit()->selectAll();
}

void frmFrameRate::cmdOK_Click() {
    const auto rate = Number(cboFramerate->currentText().toStdString());
    if (!rate || !(*rate > LowerBound && *rate < UpperBound)) {
        ShowMessage(this, tr("Illegal frame rate!"), MessageIcon::Exclamation);
        return;
    }
    m_document.FrameRate = *rate;
    accept();
}
