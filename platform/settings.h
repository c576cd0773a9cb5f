#pragma once

#include <QSettings>
#include <QString>

#include <cstdint>

/// The current user's settings: HKCU\Software\Tevo\Quelmar on Windows, the file
/// Tevo/Quelmar.conf in the user's configuration folder elsewhere. A window reads
/// its values when it loads and writes them when it unloads.
class Settings {
  public:
    Settings();

    /// The default when the value is missing or is no whole number of 32 bits.
    std::int32_t Dword(const QString& name, std::int32_t defaultValue) const;
    QString String(const QString& name, const QString& defaultValue) const;
    void SetDword(const QString& name, std::int32_t value);
    void SetString(const QString& name, const QString& value);

  private:
    QSettings m_store;
};
