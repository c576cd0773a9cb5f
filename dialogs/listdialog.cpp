#include "dialogs/listdialog.h"

#include "platform/updown.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>

ListDialog::ListDialog(TitleList& list, QWidget* parent, const QString& name,
                       const QString& caption)
    : QDialog(parent)
    , m_list(list) {
    setObjectName(name);
    setWindowTitle(caption);
    setAttribute(Qt::WA_DeleteOnClose);
}

void ListDialog::done(int result) {
    if (!m_unloaded) {
        m_unloaded = true;
        Form_Unload();
    }
    QDialog::done(result);
}

void ListDialog::SetTabOrder(std::initializer_list<QWidget*> order) {
    for (auto control = order.begin(); control + 1 != order.end(); ++control)
        setTabOrder(*control, *(control + 1));
}

QPushButton* ListDialog::NewButton(const QString& name, const QString& caption, QWidget* parent) {
    auto* button = new QPushButton(caption, parent);
    button->setObjectName(name);
    button->setAutoDefault(false);
    return button;
}

QLineEdit* ListDialog::NewDisplay(const QString& name, QWidget* parent) {
    auto* box = new QLineEdit(parent);
    box->setObjectName(name);
    box->setReadOnly(true);
    box->setFocusPolicy(Qt::ClickFocus);
    QPalette palette;
    palette.setBrush(QPalette::Base, Qt::transparent);
    box->setPalette(palette);
    SetTimeWidth(box);
    return box;
}

void ListDialog::SetTimeWidth(QLineEdit* box) {
    constexpr int BesideText = 24;
    box->setFixedWidth(box->fontMetrics().horizontalAdvance("-00:00:00,000") + BesideText);
}

QHBoxLayout* ListDialog::WithSpinner(QLineEdit* box, UpDown* spinner) {
    auto* together = new QHBoxLayout;
    together->setSpacing(0);
    together->addWidget(box);
    together->addWidget(spinner);
    return together;
}
