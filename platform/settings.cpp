#include "platform/settings.h"

#include <QVariant>

#include <limits>

Settings::Settings()
    : m_store(QSettings::NativeFormat, QSettings::UserScope, "Tevo", "Quelmar") {}

std::int32_t Settings::Dword(const QString& name, std::int32_t defaultValue) const {
    bool whole = false;
    const qlonglong value = m_store.value(name).toString().toLongLong(&whole);
    if (!whole || value < std::numeric_limits<std::int32_t>::min() ||
        value > std::numeric_limits<std::int32_t>::max())
        return defaultValue;
    return static_cast<std::int32_t>(value);
}

QString Settings::String(const QString& name, const QString& defaultValue) const {
    const QVariant value = m_store.value(name);
    return value.isValid() && value.canConvert<QString>() ? value.toString() : defaultValue;
}

void Settings::SetDword(const QString& name, std::int32_t value) {
    m_store.setValue(name, value);
}

void Settings::SetString(const QString& name, const QString& value) {
    m_store.setValue(name, value);
}
