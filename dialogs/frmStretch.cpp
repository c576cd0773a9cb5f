#include "dialogs/frmStretch.h"

#include "dialogs/chosentitles.h"
#include "dialogs/minutesecondentry.h"
#include "dialogs/placement.h"
#include "model/numbers.h"
#include "model/step.h"
#include "model/times.h"
#include "platform/errorgate.h"
#include "platform/messageboxes.h"
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

} // namespace

void frmStretch::Form_Load() {
    const Settings settings;
    const QPoint beside = List().Window()->pos();
    const std::int32_t left = settings.Dword("StretchLeft", ToTwips(beside.x()) + BesideTwips);
    const std::int32_t top = settings.Dword("StretchTop", ToTwips(beside.y()) + BesideTwips);
    resize(sizeHint().expandedTo({0, ToPixels(DesignHeight)}));
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

double frmStretch::MomentIn(const TypedBox& box, const QLineEdit& text, QString& doubt) const {
    if (const std::optional<double> moment = box.Value())
        return *moment;
    const double read = ParseTime(text.text().toStdString());
    doubt += tr("“%1” is not a time and counts as %2.\n")
                 .arg(text.text(), QString::fromStdString(FormatTime(read)));
    return read;
}

std::optional<TimeMap> frmStretch::TitlesMap(QString& doubt) {
    const double oldFirst = Subt().StartTime(List().FirstMarkedTitle());
    const double oldLast = Subt().StartTime(List().SecondMarkedTitle());
    if (oldFirst == oldLast) {
        ShowMessage(this, tr("The two marked titles start at the same time. Mark two that do not."),
                    MessageIcon::Exclamation);
        return std::nullopt;
    }
    const double newFirst = MomentIn(*m_first, *txtFirstSubtitle, doubt);
    const double newLast = MomentIn(*m_last, *txtLastSubtitle, doubt);
    return MapByTitles(oldFirst, oldLast, newFirst, newLast);
}

std::optional<TimeMap> frmStretch::Map(QString& doubt) {
    if (TS->currentWidget() == PB[0])
        return TitlesMap(doubt);
    if (TS->currentWidget() == PB[2]) {
        const std::optional<double> current = m_currentRate->Ask(this);
        const std::optional<double> desired = current ? m_desiredRate->Ask(this) : std::nullopt;
        return desired ? std::optional(MapByRates(*current, *desired)) : std::nullopt;
    }
    const std::optional<double> amount = Amount->Ask(this);
    if (!amount)
        return std::nullopt;
    return MapByAmount(Subt().StartTime(Subt().Count()),
                       optStretch->isChecked() ? *amount : -*amount);
}

void frmStretch::cmdOK_Click() {
    if (Subt().Count() == 0)
        return Unload();
    QString doubt;
    const std::optional<TimeMap> map = Map(doubt);
    if (!map)
        return;
    const std::vector<std::int32_t>& rows = Chosen->Numbers();
    // Where the last title does not start after 0, an amount sets everything to 0.
    const bool byAmountOfNothing =
        TS->currentWidget() == PB[1] && !(Subt().StartTime(Subt().Count()) > 0);
    if (!byAmountOfNothing)
        doubt += QString::fromStdString(OddAbout(Subt(), rows, *map));
    if (!Chosen->MayMap(this, *map, doubt.trimmed()))
        return;
    {
        const Step step(Subt(), "Stretch", Step::Undo::Emptied);
        MapTitles(Subt(), rows, *map);
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
