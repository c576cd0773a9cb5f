#include "dialogs/typedbox.h"

#include "editing/typed.h"
#include "platform/messageboxes.h"

#include <QComboBox>
#include <QLineEdit>

namespace {

constexpr double HighestRate = 1000;

std::optional<double> Rate(std::string_view text) {
    const std::optional<double> rate = TypedNumber(text);
    return rate && *rate > 0 && *rate <= HighestRate ? rate : std::nullopt;
}

/// A quarter red, on light and on dark grounds.
QColor Wrong(const QColor& base) {
    constexpr double Share = 0.25;
    const auto mixed = [](int one, int other) {
        return qRound(one * (1 - Share) + other * Share);
    };
    return {mixed(base.red(), 230), mixed(base.green(), 0), mixed(base.blue(), 0)};
}

QWidget* ShownFor(QLineEdit* box) {
    auto* combo = qobject_cast<QComboBox*>(box->parentWidget());
    return combo != nullptr ? static_cast<QWidget*>(combo) : box;
}

} // namespace

const TypedText TypedMinutes{"a number of minutes", "A number of minutes, from 0 to 3600",
                             TypedNumber};
const TypedText TypedSeconds{"a number of seconds", "A number of seconds, such as 2.4",
                             TypedNumber};
const TypedText TypedMoment{"a time", "A time, such as 00:01:02,300, 1:02.3 or 62.3", TypedTime};
const TypedText TypedRate{"a frame rate", "A number of frames a second, such as 23.976", Rate};

TypedBox::TypedBox(QLineEdit* box, const TypedText& wanted)
    : m_box(box)
    , m_shown(ShownFor(box))
    , m_wanted(wanted) {
    connect(box, &QLineEdit::textChanged, this, &TypedBox::Changed);
    Changed();
}

std::optional<double> TypedBox::Value() const {
    return m_wanted.read(m_box->text().toStdString());
}

void TypedBox::Changed() {
    const bool good = Value().has_value();
    if (good)
        m_lastGood = m_box->text().toStdString();
    if (m_marked == good)
        Mark(!good);
}

void TypedBox::Mark(bool wrong) {
    m_marked = wrong;
    if (wrong) {
        m_toolTip = m_shown->toolTip();
        QPalette palette;
        palette.setColor(QPalette::Base, Wrong(m_shown->palette().color(QPalette::Base)));
        m_shown->setPalette(palette);
    } else {
        m_shown->setPalette(QPalette());
    }
    const QString toolTip = wrong ? tr(m_wanted.expected) : m_toolTip;
    m_shown->setToolTip(toolTip);
    m_shown->setAccessibleDescription(wrong ? toolTip : QString());
}

QString TypedBox::Complaint() const {
    if (Value())
        return {};
    return tr("Not %1: “%2”").arg(tr(m_wanted.what), m_box->text());
}

std::optional<double> TypedBox::Ask(QWidget* window) const {
    const std::optional<double> value = Value();
    if (!value) {
        ShowMessage(window, Complaint(), MessageIcon::Exclamation);
        m_box->setFocus();
        m_box->selectAll();
    }
    return value;
}
