#include "mainwindow/spokenwindow.h"

#include "mainwindow/frmQuelmar.h"
#include "mainwindow/transportstrip.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QWindow>

#include <array>
#include <cstdint>

namespace {

/// One of the strip's buttons, which is drawn and no widget.
class SpokenButton : public QAccessibleInterface, public QAccessibleActionInterface {
  public:
    SpokenButton(TransportStrip& strip, std::int16_t button)
        : m_strip(strip)
        , m_button(button) {}

    bool isValid() const override { return true; }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return m_strip.window()->windowHandle(); }
    QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }
    QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(&m_strip);
    }
    QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }

    QString text(QAccessible::Text kind) const override {
        switch (kind) {
        case QAccessible::Name:
            return TransportStrip::Name(m_button);
        case QAccessible::Accelerator:
            return m_strip.Key(m_button);
        default:
            return {};
        }
    }
    void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}
    QRect rect() const override {
        const QRect area = m_strip.ButtonArea(m_button);
        return {m_strip.mapToGlobal(area.topLeft()), area.size()};
    }
    QAccessible::Role role() const override { return QAccessible::Button; }
    QAccessible::State state() const override {
        QAccessible::State state;
        state.disabled = !m_strip.isEnabled();
        state.invisible = !m_strip.isVisible();
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }
    QStringList actionNames() const override { return {pressAction()}; }
    void doAction(const QString& name) override {
        if (name == pressAction() && m_strip.isEnabled())
            emit m_strip.Pressed(m_button);
    }
    QStringList keyBindingsForAction(const QString& /*name*/) const override {
        return {m_strip.Key(m_button)};
    }

  private:
    TransportStrip& m_strip;
    const std::int16_t m_button;
};

class SpokenStrip : public QAccessibleWidget {
  public:
    explicit SpokenStrip(TransportStrip* strip)
        : QAccessibleWidget(strip, QAccessible::ToolBar) {
        for (std::int16_t button = 1; button <= TransportStrip::ButtonCount; ++button)
            m_ids[IndexOf(button)] =
                QAccessible::registerAccessibleInterface(new SpokenButton(*strip, button));
    }
    ~SpokenStrip() override {
        for (const QAccessible::Id id : m_ids)
            QAccessible::deleteAccessibleInterface(id);
    }
    SpokenStrip(const SpokenStrip&) = delete;
    SpokenStrip& operator=(const SpokenStrip&) = delete;

    int childCount() const override { return TransportStrip::ButtonCount; }
    QAccessibleInterface* child(int index) const override {
        return index < 0 || index >= childCount()
                   ? nullptr
                   : QAccessible::accessibleInterface(m_ids[static_cast<std::size_t>(index)]);
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        for (int i = 0; i < childCount(); ++i)
            if (this->child(i) == child)
                return i;
        return -1;
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        for (int i = 0; i < childCount(); ++i)
            if (child(i)->rect().contains(x, y))
                return child(i);
        return nullptr;
    }

  private:
    static std::size_t IndexOf(std::int16_t button) { return static_cast<std::size_t>(button - 1); }

    std::array<QAccessible::Id, TransportStrip::ButtonCount> m_ids{};
};

QAccessibleInterface* Spoken(const QString& /*name*/, QObject* object) {
    if (auto* strip = qobject_cast<TransportStrip*>(object))
        return new SpokenStrip(strip);
    if (auto* window = qobject_cast<frmQuelmar*>(object))
        return new QAccessibleWidget(window, QAccessible::Window);
    return nullptr;
}

} // namespace

void SpeakMainWindow() {
    QAccessible::installFactory(&Spoken);
}
