#include "platform/settings.h"

#include <QVariant>

#include <limits>

Settings::Settings()
    : m_store(QSettings::NativeFormat, QSettings::UserScope, "Tevo", "Quelmar") {}

std::int32_t Settings::Dword(NumberSetting setting) const {
    return Dword(setting, setting.Standard().toInt());
}

std::int32_t Settings::Dword(NumberSetting setting, std::int32_t designed) const {
    bool whole = false;
    const qlonglong value = m_store.value(setting.Name()).toString().toLongLong(&whole);
    if (!whole || value < std::numeric_limits<std::int32_t>::min() ||
        value > std::numeric_limits<std::int32_t>::max())
        return designed;
    return static_cast<std::int32_t>(value);
}

QString Settings::String(TextSetting setting) const {
    return String(setting, setting.Standard());
}

QString Settings::String(TextSetting setting, const QString& designed) const {
    const QVariant value = m_store.value(setting.Name());
    return value.isValid() && value.canConvert<QString>() ? value.toString() : designed;
}

void Settings::SetDword(NumberSetting setting, std::int32_t value) {
    m_store.setValue(setting.Name(), value);
}

void Settings::SetString(TextSetting setting, const QString& value) {
    m_store.setValue(setting.Name(), value);
}
