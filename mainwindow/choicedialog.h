#pragma once

#include <QDialog>
#include <QStringList>

#include <optional>

class QLabel;
class QPushButton;
class QTreeWidget;

/// Asks for one line of a list. OK, Enter and a double click accept it, anything else
/// chooses nothing.
class ChoiceDialog : public QDialog {
    Q_OBJECT

  public:
    /// The number of the chosen line, from 0. The dialog is shown until the user has decided.
    std::optional<int> Ask();

  protected:
    ChoiceDialog(QWidget* parent, const QString& name, const QString& caption, const QString& text,
                 const QStringList& headers);

    /// A line that is not `enabled` is shown and cannot be chosen. Numbers are aligned right.
    void AddLine(const QStringList& texts, bool enabled = true);
    void SetLine(int line, int column, const QString& text);
    /// The columns are made as wide as their texts, and the first line that can be is chosen.
    void LinesAdded();
    void ChooseLine(int line);

    QLabel* Label1;
    QTreeWidget* lstChoices;
    QPushButton* cmdOK;
    QPushButton* cmdCancel;

  private:
    void LayOut();
    void lstChoices_Change();
    void cmdOK_Click();
    void cmdCancel_Click();
};
