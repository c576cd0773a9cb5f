#include "platform/settings.h"

#include <QFileInfo>
#include <QLockFile>
#include <QStandardPaths>
#include <QVariant>

#include <limits>

namespace {

#ifdef Q_OS_WIN
bool Readable() {
    return true;
}
#else
/// The files that the settings are read from: reading anything else, a named pipe say,
/// could take for ever.
bool Readable() {
    const QString folder =
        QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + "/Tevo";
    for (const QString& name : {folder + "/Quelmar.conf", folder + ".conf"}) {
        const QFileInfo file(name);
        if (file.exists() && !file.isFile())
            return false;
    }
    return true;
}
#endif

} // namespace

Settings::Settings() {
    if (Readable())
        m_store.emplace(QSettings::NativeFormat, QSettings::UserScope, "Tevo", "Quelmar");
}

// The store itself would wait for its lock as long as it takes.
bool Settings::Writable() {
#ifndef Q_OS_WIN
    constexpr int LongestWait = 300;
    if (m_store && !m_asked) {
        m_asked = true;
        QLockFile lock(m_store->fileName() + ".lock");
        if (!lock.tryLock(LongestWait) && lock.error() == QLockFile::LockFailedError)
            m_store.reset();
    }
#endif
    return m_store.has_value();
}

std::int32_t Settings::Dword(NumberSetting setting) const {
    return Dword(setting, setting.Standard().toInt());
}

std::int32_t Settings::Dword(NumberSetting setting, std::int32_t designed) const {
    bool whole = false;
    const qlonglong value =
        m_store ? m_store->value(setting.Name()).toString().toLongLong(&whole) : 0;
    if (!whole || value < std::numeric_limits<std::int32_t>::min() ||
        value > std::numeric_limits<std::int32_t>::max())
        return designed;
    return static_cast<std::int32_t>(value);
}

QString Settings::String(TextSetting setting) const {
    return String(setting, setting.Standard());
}

QString Settings::String(TextSetting setting, const QString& designed) const {
    const QVariant value = m_store ? m_store->value(setting.Name()) : QVariant();
    return value.isValid() && value.canConvert<QString>() ? value.toString() : designed;
}

void Settings::SetDword(NumberSetting setting, std::int32_t value) {
    if (Writable())
        m_store->setValue(setting.Name(), value);
}

void Settings::SetString(TextSetting setting, const QString& value) {
    if (Writable())
        m_store->setValue(setting.Name(), value);
}
