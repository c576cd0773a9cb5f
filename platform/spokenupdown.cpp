#include "platform/spokenupdown.h"

#include "platform/updown.h"

#include <QAccessible>
#include <QAccessibleWidget>

namespace {

class SpokenUpDown : public QAccessibleWidget, public QAccessibleValueInterface {
  public:
    explicit SpokenUpDown(UpDown* spinner)
        : QAccessibleWidget(spinner, QAccessible::SpinBox)
        , m_spinner(*spinner) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ValueInterface)
            return static_cast<QAccessibleValueInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    QString text(QAccessible::Text kind) const override {
        const UpDown::Spoken& spoken = m_spinner.Speaks;
        if (kind == QAccessible::Value && spoken.text)
            return spoken.text();
        return QAccessibleWidget::text(kind);
    }

    QVariant currentValue() const override {
        const UpDown::Spoken& spoken = m_spinner.Speaks;
        return spoken.value ? spoken.value() : 0.0;
    }
    void setCurrentValue(const QVariant& value) override {
        const UpDown::Spoken& spoken = m_spinner.Speaks;
        if (m_spinner.isEnabled() && spoken.set)
            spoken.set(qBound(spoken.least, value.toDouble(), spoken.most));
    }
    QVariant minimumValue() const override { return m_spinner.Speaks.least; }
    QVariant maximumValue() const override { return m_spinner.Speaks.most; }
    QVariant minimumStepSize() const override { return m_spinner.Speaks.step; }

    QStringList actionNames() const override {
        return QStringList{increaseAction(), decreaseAction()} + QAccessibleWidget::actionNames();
    }
    void doAction(const QString& name) override {
        if (name == increaseAction() && m_spinner.isEnabled())
            emit m_spinner.UpClick();
        else if (name == decreaseAction() && m_spinner.isEnabled())
            emit m_spinner.DownClick();
        else
            QAccessibleWidget::doAction(name);
    }

  private:
    UpDown& m_spinner;
};

QAccessibleInterface* Spoken(const QString& /*name*/, QObject* object) {
    auto* spinner = qobject_cast<UpDown*>(object);
    return spinner == nullptr ? nullptr : new SpokenUpDown(spinner);
}

} // namespace

void SpeakUpDowns() {
    QAccessible::installFactory(&Spoken);
}
