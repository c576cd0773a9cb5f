#include "dialogs/listdialog.h"

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

QPushButton* ListDialog::NewButton(const QString& name, const QString& caption, QWidget* parent) {
    auto* button = new QPushButton(caption, parent);
    button->setObjectName(name);
    button->setAutoDefault(false);
    return button;
}
