#include "mainwindow/frmPickKey.h"

#include "platform/errorgate.h"
#include "platform/keycodes.h"

#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace {

struct NamedKey {
    std::int16_t code;
    const char* name;
};
constexpr NamedKey NamedKeys[] = {
    {32, "Space"}, {16, "Shift"}, {17, "Control"}, {18, "Lt Alt"}, {93, "Rt Alt"},
};

} // namespace

QString KeyName(std::int16_t keyCode) {
    for (const NamedKey& key : NamedKeys)
        if (key.code == keyCode)
            return QString::fromLatin1(key.name);
    return QStringLiteral("[%1]").arg(keyCode);
}

QPoint PickKeyPlace(QPoint mainWindow, const QRect& box, int dialogWidth) {
    const int offset = (dialogWidth - box.width()) / 2;
    return mainWindow + box.topLeft() - QPoint(offset, offset);
}

frmPickKey::frmPickKey(QWidget* mainWindow, QLineEdit& txtKey, std::int16_t& actionKey)
    : QDialog(mainWindow)
    , Label1(new QLabel(tr("Please press the key you want to use to synchronize titles."), this))
    , m_txtKey(txtKey)
    , m_actionKey(actionKey) {
    setObjectName("frmPickKey");
    setWindowTitle(tr("Select key"));
    setModal(true);
    Label1->setObjectName("Label1");
    Label1->setAlignment(Qt::AlignCenter);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 24, 24, 24);
    layout->addWidget(Label1);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    Form_Load(*mainWindow);
}

void frmPickKey::Form_Load(const QWidget& mainWindow) {
    adjustSize();
    const QRect box(m_txtKey.mapTo(&mainWindow, QPoint(0, 0)), m_txtKey.size());
    move(PickKeyPlace(mainWindow.pos(), box, width()));
}

// Every key is a choice here, Tab, Escape and Enter too: none may be taken for moving
// the focus or for ending the dialog.
bool frmPickKey::event(QEvent* event) {
    switch (event->type()) {
    case QEvent::ShortcutOverride:
    case QEvent::KeyPress:
        event->accept();
        return true;
    case QEvent::KeyRelease: {
        const auto& key = static_cast<const QKeyEvent&>(*event);
        event->accept();
        if (!key.isAutoRepeat())
            Guarded([&] { Form_KeyUp(VirtualKeyCode(key)); });
        return true;
    }
    default:
        return QDialog::event(event);
    }
}

void frmPickKey::Form_KeyUp(std::int16_t keyCode) {
    // A key that has no code could not be told from others of its kind.
    if (keyCode == 0)
        return;
    m_txtKey.setText(KeyName(keyCode));
    m_actionKey = keyCode;
    accept();
}
