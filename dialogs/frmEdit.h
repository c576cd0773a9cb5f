#pragma once

#include "dialogs/listdialog.h"
#include "dialogs/titlebox.h"
#include "dialogs/typedbox.h"
#include "editing/edittitle.h"

#include <cstdint>
#include <memory>
#include <optional>

class QLineEdit;

/// "Edit subtitle": text, start and duration of the list editor's current title.
class frmEdit : public ListDialog {
    Q_OBJECT

  public:
    frmEdit(TitleList& list, QWidget* parent);

    TitleBox* txtSubt;
    QWidget* PB;
    QLineEdit* txtStart;
    QLineEdit* txtDuration;
    QPushButton* cmdB;
    QPushButton* cmdI;
    QPushButton* cmdOK;
    QPushButton* cmdCancel;

    void cmdOK_Click();
    void cmdCancel_Click();
    void cmdB_Click();
    void cmdI_Click();

  private:
    void LayOut();
    void Form_Load();
    void Form_Unload() override;
    void UpdateTagButtons();
    /// Keeps what is typed safe until it is confirmed or given up.
    void KeepTyped();
    void GoOnWithLeft();
    void InsertMark(const QString& mark);

    /// The times that the boxes mean: the title's own while a box is left alone.
    struct Times {
        double start;
        double end;
    };
    /// Nothing, after a message, when a box holds what it should not.
    std::optional<Times> AskTimes();

    std::int32_t m_index = 0;
    QString m_loadedStart;
    QString m_loadedDuration;
    std::unique_ptr<TypedBox> m_start;
    std::unique_ptr<TypedBox> m_duration;
    OpenMarks m_open;
};
