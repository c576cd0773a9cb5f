#include "dialogs/frmShift.h"

#include "dialogs/chosentitles.h"
#include "dialogs/minutesecondentry.h"
#include "dialogs/placement.h"
#include "editing/shift.h"
#include "model/numbers.h"
#include "model/step.h"
#include "model/times.h"
#include "platform/errorgate.h"
#include "platform/updown.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

frmShift::frmShift(TitleList& list, QWidget* parent)
    : ListDialog(list, parent, "frmShift", "Shift all subtitles")
    , txtCurrent(NewDisplay("txtCurrent", this))
    , optBeginning(Named<QRadioButton>("optBeginning", "beginning", this))
    , optEnd(Named<QRadioButton>("optEnd", "end, by", this))
    , Amount(new MinuteSecondEntry(this, SecondsRule::CarryIntoMinutes))
    , cmdOK(NewButton("cmdOK", "OK", this))
    , cmdCancel(NewButton("cmdCancel", "Cancel", this))
    , Chosen(new ChosenTitles(list, tr("Moves"), cmdOK, this)) {
    LayOut();
    connect(optBeginning, &QRadioButton::clicked, this,
            [this] { Guarded([this] { optBeginning_Click(); }); });
    connect(cmdOK, &QPushButton::clicked, this, [this] { Guarded([this] { cmdOK_Click(); }); });
    connect(cmdCancel, &QPushButton::clicked, this, &frmShift::Unload);
    Form_Load();
}

void frmShift::LayOut() {
    optBeginning->setChecked(true);
    cmdOK->setDefault(true);

    auto* current = new QHBoxLayout;
    current->addWidget(Named<QLabel>("Label1", "Start of first subtitle:", this));
    current->addWidget(txtCurrent);
    current->addStretch();

    auto* direction = new QHBoxLayout;
    direction->addWidget(Named<QLabel>("Label4", "Move toward", this));
    direction->addSpacing(6);
    direction->addWidget(optBeginning);
    direction->addSpacing(6);
    direction->addWidget(optEnd);
    direction->addStretch();

    auto* amount = new QHBoxLayout;
    amount->setSpacing(6);
    amount->addLayout(WithSpinner(Amount->txtMin, Amount->UpDown1));
    amount->addWidget(Named<QLabel>("Label2", "min", this));
    amount->addSpacing(6);
    amount->addLayout(WithSpinner(Amount->txtSec, Amount->UpDown2));
    amount->addWidget(Named<QLabel>("Label3", "sec", this));
    amount->addStretch();

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);

    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(14, 14, 14, 12);
    rows->setSpacing(10);
    rows->addLayout(current);
    rows->addLayout(direction);
    rows->addLayout(amount);
    rows->addWidget(Chosen);
    rows->addSpacing(4);
    rows->addLayout(buttons);
    rows->setSizeConstraint(QLayout::SetFixedSize);

    SetTabOrder({optBeginning, optEnd, Amount->txtMin, Amount->UpDown1, Amount->txtSec,
                 Amount->UpDown2, Chosen->cmdSelectAll, cmdOK, cmdCancel});
    Amount->txtMin->setFocus();
    Amount->txtMin->selectAll();
}

void frmShift::Form_Load() {
    adjustSize();
    PlaceBeside(*this, *List().Window());
    KeepOnScreen(*this);
    txtCurrent->setText(QString::fromStdString(FormatTime(Subt().StartTime(1))));
    Amount->txtSec->setText(QString::fromStdString(ThousandthsText(0)));
}

void frmShift::optBeginning_Click() {
    LimitToFirstStart();
}

void frmShift::LimitToFirstStart() {
    const auto limited = LimitToStart(Amount->txtMin->text().toStdString(),
                                      Amount->txtSec->text().toStdString(), Subt().StartTime(1));
    if (limited)
        Amount->SetBoxes(*limited);
}

void frmShift::cmdOK_Click() {
    if (Subt().Count() == 0)
        return Unload();
    const std::optional<double> amount = Amount->Ask(this);
    if (!amount)
        return;
    if (*amount == 0)
        return Unload();
    const std::vector<std::int32_t>& rows = Chosen->Numbers();
    const double delta = optBeginning->isChecked() ? -*amount : *amount;
    if (!Chosen->MayMap(this, {1, delta}))
        return;
    {
        const Step step(Subt(), "Shift", Step::Undo::Emptied);
        ShiftTitles(Subt(), rows, delta);
    }
    List().ShowAllEdited(rows);
    List().LoadList();
    Unload();
}
