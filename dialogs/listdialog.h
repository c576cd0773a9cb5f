#pragma once

#include "dialogs/titlelist.h"

#include <QDialog>

#include <initializer_list>

class QHBoxLayout;
class QLineEdit;
class QPushButton;
class UpDown;

/// What the dialogs that work for the list editor have in common. They delete
/// themselves when they are closed, in whatever way that happens.
class ListDialog : public QDialog {
    Q_OBJECT

  public:
    void done(int result) override;

  protected:
    ListDialog(TitleList& list, QWidget* parent, const QString& name, const QString& caption);

    TitleList& List() { return m_list; }
    Document& document() { return m_list.document(); }
    SUBTITLES& Subt() { return m_list.document().Subt; }

    /// Closes the dialog, shown or not.
    void Unload() { done(0); }
    virtual void Form_Unload() {}

    /// The order in which Tab visits the controls.
    static void SetTabOrder(std::initializer_list<QWidget*> order);
    /// A box of one line that only shows something.
    static QLineEdit* NewDisplay(const QString& name, QWidget* parent);
    static void SetTimeWidth(QLineEdit* box);
    /// The box and the spinner of its value, as one.
    static QHBoxLayout* WithSpinner(QLineEdit* box, UpDown* spinner);
    QPushButton* NewButton(const QString& name, const QString& caption, QWidget* parent);

    /// A control under its name.
    template <typename CONTROL, typename... ARGUMENTS>
    static CONTROL* Named(const char* name, ARGUMENTS&&... arguments) {
        auto* control = new CONTROL(std::forward<ARGUMENTS>(arguments)...);
        control->setObjectName(QString::fromLatin1(name));
        return control;
    }

  private:
    TitleList& m_list;
    bool m_unloaded = false;
};
