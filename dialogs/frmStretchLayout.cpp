#include "dialogs/frmStretch.h"

#include "dialogs/chosentitles.h"
#include "dialogs/minutesecondentry.h"
#include "platform/errorgate.h"
#include "platform/updown.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTabWidget>

namespace {

constexpr int Gap = 8;

struct Tab {
    const char* caption;
    const char* toolTip;
};

constexpr std::array<Tab, 3> Tabs{
    {{"By title", "Reposition all titles based on the exact start time of two selected titles"},
     {"Specify Amount",
      "Adjust all titles based on a change in position of the last subtitle of the file"},
     {"By Frame Rate", "Adjust for a different frame rate"}}};

constexpr std::array<const char*, 5> Rates{"23.976", "24", "25", "29.97", "30"};

QGridLayout* NewGrid(QWidget* panel) {
    auto* grid = new QGridLayout(panel);
    grid->setContentsMargins(12, 12, 12, Gap);
    grid->setHorizontalSpacing(Gap);
    grid->setVerticalSpacing(Gap);
    return grid;
}

QComboBox* FillRates(QComboBox* box) {
    for (const char* rate : Rates)
        box->addItem(QString::fromLatin1(rate));
    box->setEditable(true);
    box->setInsertPolicy(QComboBox::NoInsert);
    // "2" is not yet 23.976, and Return means OK, not the end of a completion.
    box->setCompleter(nullptr);
    box->setMaximumWidth(box->fontMetrics().horizontalAdvance("23.9760000") + 40);
    return box;
}

} // namespace

frmStretch::frmStretch(TitleList& list, QWidget* parent)
    : ListDialog(list, parent, "frmStretch", "Stretch/shrink movie duration")
    , TS(Named<QTabWidget>("TS", this))
    , PB{Named<QWidget>("PB(0)"), Named<QWidget>("PB(1)"), Named<QWidget>("PB(2)")}
    , txtFirstSubtitle(Named<QLineEdit>("txtFirstSubtitle", PB[0]))
    , UDFirst(Named<UpDown>("UDFirst", PB[0]))
    , txtLastSubtitle(Named<QLineEdit>("txtLastSubtitle", PB[0]))
    , UDLast(Named<UpDown>("UDLast", PB[0]))
    , lblTitleInfo(Named<QLabel>("lblTitleInfo", PB[0]))
    , txtCurrent(NewDisplay("txtCurrent", PB[1]))
    , optStretch(Named<QRadioButton>("optStretch", "Stretch", PB[1]))
    , optShrink(Named<QRadioButton>("optShrink", "Shrink by", PB[1]))
    , Amount(new MinuteSecondEntry(PB[1], SecondsRule::Clamp))
    , cboCurrentRate(FillRates(Named<QComboBox>("cboCurrentRate", PB[2])))
    , cboDesiredRate(FillRates(Named<QComboBox>("cboDesiredRate", PB[2])))
    , lblRateInfo(Named<QLabel>("lblRateInfo", PB[2]))
    , cmdOK(NewButton("cmdOK", "OK", this))
    , cmdCancel(NewButton("cmdCancel", "Cancel", this))
    , Chosen(new ChosenTitles(list, tr("Stretches"), cmdOK, this)) {
    LayOut();
    m_first = std::make_unique<TypedBox>(txtFirstSubtitle, TypedMoment);
    m_last = std::make_unique<TypedBox>(txtLastSubtitle, TypedMoment);
    m_currentRate = std::make_unique<TypedBox>(cboCurrentRate->lineEdit(), TypedRate);
    m_desiredRate = std::make_unique<TypedBox>(cboDesiredRate->lineEdit(), TypedRate);
    Amount->AddTimeSpinner(UDFirst, *m_first, txtFirstSubtitle);
    Amount->AddTimeSpinner(UDLast, *m_last, txtLastSubtitle);
    connect(cmdOK, &QPushButton::clicked, this, [this] { Guarded([this] { cmdOK_Click(); }); });
    connect(cmdCancel, &QPushButton::clicked, this, &frmStretch::cmdCancel_Click);
    Form_Load();
}

void frmStretch::LayOut() {
    LayOutTitles();
    LayOutAmount();
    LayOutRates();
    for (std::size_t i = 0; i < Tabs.size(); ++i) {
        const int tab = TS->addTab(PB[i], QString::fromLatin1(Tabs[i].caption));
        TS->setTabToolTip(tab, QString::fromLatin1(Tabs[i].toolTip));
    }
    TS->tabBar()->setObjectName("TS");
    TS->tabBar()->setExpanding(false);
    TS->setUsesScrollButtons(false);
    cmdOK->setDefault(true);

    auto* bottom = new QHBoxLayout;
    bottom->setSpacing(Gap);
    bottom->addWidget(Chosen, 1);
    bottom->addSpacing(2 * Gap);
    bottom->addWidget(cmdOK);
    bottom->addWidget(cmdCancel);

    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(12, 12, 12, 12);
    rows->setSpacing(Gap);
    rows->addWidget(TS, 1);
    rows->addLayout(bottom);
    SetTabOrder({TS->tabBar(), txtFirstSubtitle, UDFirst, txtLastSubtitle, UDLast, optStretch,
                 optShrink, Amount->txtMin, Amount->UpDown1, Amount->txtSec, Amount->UpDown2,
                 cboCurrentRate, cboDesiredRate, Chosen->cmdSelectAll, cmdOK, cmdCancel});
    txtFirstSubtitle->setFocus();
    txtFirstSubtitle->selectAll();
}

void frmStretch::LayOutTitles() {
    auto* first = Named<QLabel>("Label6", "First subtitle time:", PB[0]);
    auto* last = Named<QLabel>("Label7", "Last subtitle time:", PB[0]);
    first->setBuddy(txtFirstSubtitle);
    last->setBuddy(txtLastSubtitle);
    UDFirst->setAccessibleName(first->text());
    UDLast->setAccessibleName(last->text());
    SetTimeWidth(txtFirstSubtitle);
    SetTimeWidth(txtLastSubtitle);
    QGridLayout* grid = NewGrid(PB[0]);
    grid->addWidget(first, 0, 0);
    grid->addLayout(WithSpinner(txtFirstSubtitle, UDFirst), 0, 1);
    grid->addWidget(last, 1, 0);
    grid->addLayout(WithSpinner(txtLastSubtitle, UDLast), 1, 1);
    grid->addWidget(lblTitleInfo, 2, 0, 1, 3);
    grid->setColumnStretch(2, 1);
    grid->setRowStretch(2, 1);
}

void frmStretch::LayOutAmount() {
    auto* current = Named<QLabel>("Label1", "Current length (start of last subtitle):", PB[1]);
    txtCurrent->setAccessibleName(current->text());
    optStretch->setChecked(true);

    auto* length = new QHBoxLayout;
    length->setSpacing(Gap);
    length->addWidget(current);
    length->addWidget(txtCurrent);
    length->addStretch();

    auto* amount = new QHBoxLayout;
    amount->setSpacing(Gap);
    amount->addWidget(optStretch);
    amount->addWidget(optShrink);
    amount->addSpacing(Gap);
    amount->addLayout(WithSpinner(Amount->txtMin, Amount->UpDown1));
    amount->addWidget(Named<QLabel>("Label2", "min", PB[1]));
    amount->addLayout(WithSpinner(Amount->txtSec, Amount->UpDown2));
    amount->addWidget(Named<QLabel>("Label3", "sec", PB[1]));
    amount->addStretch();

    QGridLayout* grid = NewGrid(PB[1]);
    grid->addLayout(length, 0, 0);
    grid->addLayout(amount, 1, 0);
    grid->setRowStretch(2, 1);
}

void frmStretch::LayOutRates() {
    auto* current = Named<QLabel>("Label4", "Current:", PB[2]);
    auto* desired = Named<QLabel>("Label5", "Desired:", PB[2]);
    current->setBuddy(cboCurrentRate);
    desired->setBuddy(cboDesiredRate);
    QGridLayout* grid = NewGrid(PB[2]);
    grid->addWidget(current, 0, 0);
    grid->addWidget(cboCurrentRate, 0, 1);
    grid->addWidget(desired, 1, 0);
    grid->addWidget(cboDesiredRate, 1, 1);
    grid->addWidget(lblRateInfo, 2, 0, 1, 3);
    grid->setColumnStretch(2, 1);
    grid->setRowStretch(2, 1);
}
