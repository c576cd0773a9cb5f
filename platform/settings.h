#pragma once

#include <QSettings>
#include <QString>

#include <cstdint>
#include <optional>
#include <string_view>

enum class SettingType : std::uint8_t {
    /// A whole number of 32 bits.
    Number,
    Text,
};

/// One setting: everything that is known of it outside the window that uses it.
struct SettingRow {
    /// The window that uses it gives the default.
    static constexpr std::string_view Designed = "as designed";
    /// People write it, by hand.
    static constexpr std::string_view Nobody = "nobody";

    std::string_view name;
    SettingType type;
    /// What holds while the value is missing or of another type.
    std::string_view standard;
    /// The window that writes it when it closes.
    std::string_view writer;
};

/// A setting is a row here, and is described in README.md.
inline constexpr SettingRow SettingRows[] = {
    {"Left", SettingType::Number, SettingRow::Designed, "frmQuelmar"},
    {"Top", SettingType::Number, SettingRow::Designed, "frmQuelmar"},
    {"Width", SettingType::Number, SettingRow::Designed, "frmQuelmar"},
    {"Height", SettingType::Number, SettingRow::Designed, "frmQuelmar"},
    {"MRU", SettingType::Text, "", "frmQuelmar"},
    {"LastFrameRate", SettingType::Text, "25", "frmQuelmar"},
    {"ShowOnPicture", SettingType::Number, "1", "frmQuelmar"},
    {"ListLeft", SettingType::Number, SettingRow::Designed, "frmList"},
    {"ListTop", SettingType::Number, SettingRow::Designed, "frmList"},
    {"ListWidth", SettingType::Number, SettingRow::Designed, "frmList"},
    {"ListHeight", SettingType::Number, SettingRow::Designed, "frmList"},
    {"Toolbar", SettingType::Number, "1", "frmList"},
    {"ListCol1", SettingType::Number, SettingRow::Designed, "frmList"},
    {"ListCol2", SettingType::Number, SettingRow::Designed, "frmList"},
    {"ListCol3", SettingType::Number, SettingRow::Designed, "frmList"},
    {"ListFont", SettingType::Text, SettingRow::Designed, "frmList"},
    {"ListFontBold", SettingType::Number, SettingRow::Designed, "frmList"},
    {"ListFontItalic", SettingType::Number, SettingRow::Designed, "frmList"},
    {"ListFontSize", SettingType::Number, SettingRow::Designed, "frmList"},
    {"SEWidth", SettingType::Number, SettingRow::Designed, "frmEdit"},
    {"SEHeight", SettingType::Number, SettingRow::Designed, "frmEdit"},
    {"StretchLeft", SettingType::Number, SettingRow::Designed, "frmStretch"},
    {"StretchTop", SettingType::Number, SettingRow::Designed, "frmStretch"},
    {"CodePage", SettingType::Text, "guess", SettingRow::Nobody},
    {"LagMs", SettingType::Number, "0", SettingRow::Nobody},
    {"Lane", SettingType::Number, "1", "frmQuelmar"},
    {"LaneHeight", SettingType::Number, "96", "frmQuelmar"},
    {"LaneFollow", SettingType::Number, "0", "frmQuelmar"},
    {"SnapSpeech", SettingType::Number, "0", "frmQuelmar"},
    {"FitHint", SettingType::Number, "1", SettingRow::Nobody},
    {"SubRipStyles", SettingType::Number, "0", "frmQuelmar"},
};

/// A row by its name. A name that no row of that type has does not compile.
template <SettingType TYPE>
class SettingName {
  public:
    // NOLINTNEXTLINE(google-explicit-constructor): a name stands for its setting.
    consteval SettingName(const char* name) {
        for (const SettingRow& row : SettingRows)
            if (row.name == name && row.type == TYPE)
                m_row = &row;
        if (m_row == nullptr)
            throw "no setting of that name and type";
    }

    QString Name() const { return Latin1(m_row->name); }
    /// The default of the row.
    QString Standard() const { return Latin1(m_row->standard); }

  private:
    static QString Latin1(std::string_view text) {
        return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
    }

    const SettingRow* m_row = nullptr;
};

using NumberSetting = SettingName<SettingType::Number>;
using TextSetting = SettingName<SettingType::Text>;

/// The current user's settings: HKCU\Software\Tevo\Quelmar on Windows, the file
/// Tevo/Quelmar.conf in the user's configuration folder elsewhere. A window reads
/// its values when it loads and writes them when it unloads. A store that cannot be used,
/// or not at once, is as good as none: defaults are read, and nothing is written.
class Settings {
  public:
    Settings();

    /// The row's default when the value is missing or is no whole number of 32 bits.
    std::int32_t Dword(NumberSetting setting) const;
    /// The same with a default as the window is designed.
    std::int32_t Dword(NumberSetting setting, std::int32_t designed) const;
    QString String(TextSetting setting) const;
    QString String(TextSetting setting, const QString& designed) const;
    void SetDword(NumberSetting setting, std::int32_t value);
    void SetString(TextSetting setting, const QString& value);

  private:
    bool Writable();

    std::optional<QSettings> m_store;
    bool m_asked = false;
};
