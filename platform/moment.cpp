#include "platform/moment.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QLocale>

namespace {

QString Translated(const char* text) {
    return QCoreApplication::translate("Moment", text);
}

} // namespace

QString MomentText(std::int64_t time, std::int64_t now) {
    const QDateTime moment = QDateTime::fromSecsSinceEpoch(time);
    if (!moment.isValid())
        return Translated("at an unknown time");
    const QDate today = QDateTime::fromSecsSinceEpoch(now).date();
    const QString clock = moment.toString("HH:mm");
    if (moment.date() == today)
        return Translated("today at %1").arg(clock);
    if (moment.date() == today.addDays(-1))
        return Translated("yesterday at %1").arg(clock);
    return Translated("on %1 at %2")
        .arg(QLocale::c().toString(moment.date(), "d MMMM yyyy"), clock);
}
