#pragma once

#include <QObject>
#include <QString>

#include <optional>
#include <string>
#include <string_view>

class QLineEdit;
class QWidget;

/// What a box wants.
struct TypedText {
    /// As in "Not a number of seconds".
    const char* what;
    /// The tool tip while it holds something else.
    const char* expected;
    std::optional<double> (*read)(std::string_view text);
};

extern const TypedText TypedMinutes;
extern const TypedText TypedSeconds;
extern const TypedText TypedMoment;
/// Above 0, at most 1000 frames a second.
extern const TypedText TypedRate;

/// Watches what is typed into a box. While that is not what the box wants, the box is
/// coloured and its tool tip says what is expected; the last good value goes on counting.
class TypedBox : public QObject {
  public:
    /// The box, or the combo box that it belongs to, shows the colour and the tool tip.
    TypedBox(QLineEdit* box, const TypedText& wanted);

    /// Nothing while the text is not what the box wants.
    std::optional<double> Value() const;
    const std::string& LastGoodText() const { return m_lastGood; }
    /// "Not a number of seconds: “2,4x”"; empty while all is well.
    QString Complaint() const;
    /// The value; or nothing, after the complaint was shown and the box got the focus.
    std::optional<double> Ask(QWidget* window) const;

  private:
    void Changed();
    void Mark(bool wrong);

    QLineEdit* m_box;
    QWidget* m_shown;
    TypedText m_wanted;
    QString m_toolTip;
    std::string m_lastGood;
    bool m_marked = false;
};
