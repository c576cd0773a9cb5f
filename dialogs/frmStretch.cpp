#include "dialogs/frmStretch.h"

#include "dialogs/minutesecondentry.h"
#include "dialogs/placement.h"
#include "model/numbers.h"
#include "model/step.h"
#include "model/times.h"
#include "platform/errorgate.h"
#include "platform/settings.h"
#include "platform/twips.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>

namespace {

constexpr std::int32_t DesignHeight = 3000;
constexpr std::int32_t BesideTwips = 1000;

double NumberIn(const QComboBox& box) {
    return ToNumber(box.currentText().toStdString());
}

} // namespace

void frmStretch::Form_Load() {
    const Settings settings;
    const QPoint beside = List().Window()->pos();
    const std::int32_t left = settings.Dword("StretchLeft", ToTwips(beside.x()) + BesideTwips);
    const std::int32_t top = settings.Dword("StretchTop", ToTwips(beside.y()) + BesideTwips);
    resize(sizeHint().width(), ToPixels(DesignHeight));
    move(ToPixels(left), ToPixels(top));
    KeepOnScreen(*this);

    const SUBTITLES& titles = Subt();
    const auto startText = [&titles](std::int32_t index) {
        return QString::fromStdString(FormatTime(titles.StartTime(index)));
    };
    txtFirstSubtitle->setText(startText(List().FirstMarkedTitle()));
    txtLastSubtitle->setText(startText(List().SecondMarkedTitle()));
    cboCurrentRate->setCurrentIndex(0);
    cboDesiredRate->setCurrentIndex(2);
    txtCurrent->setText(startText(titles.Count()));
    Amount->txtSec->setText(QString::fromStdString(ThousandthsText(0)));
}

void frmStretch::Form_Unload() {
    Settings settings;
    settings.SetDword("StretchLeft", ToTwips(x()));
    settings.SetDword("StretchTop", ToTwips(y()));
}

TimeMap frmStretch::Map() {
    const SUBTITLES& titles = Subt();
    if (TS->currentWidget() == PB[0])
        return MapByTitles(titles.StartTime(List().FirstMarkedTitle()),
                           titles.StartTime(List().SecondMarkedTitle()),
                           ParseTime(txtFirstSubtitle->text().toStdString()),
                           ParseTime(txtLastSubtitle->text().toStdString()));
    if (TS->currentWidget() == PB[2])
        return MapByRates(NumberIn(*cboCurrentRate), NumberIn(*cboDesiredRate));
    const double last = titles.StartTime(titles.Count());
    if (!(last > 0))
        return {};
    const double amount = Amount->Amount();
    return MapByAmount(last, optStretch->isChecked() ? amount : -amount);
}

void frmStretch::cmdOK_Click() {
    if (Subt().Count() == 0)
        return Unload();
    const TimeMap map = Map();
    const std::vector<std::int32_t> rows = List().SelectedRows();
    {
        const Step step(Subt(), "Stretch", Step::Undo::Emptied);
        MapTitles(Subt(), rows, map);
    }
    List().ShowAllEdited(rows);
    if (!rows.empty())
        document().SubtitlesChanged = true;
    List().LoadList();
    Unload();
}

void frmStretch::cmdCancel_Click() {
    Unload();
}
