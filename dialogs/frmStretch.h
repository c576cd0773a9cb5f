#pragma once

#include "dialogs/listdialog.h"
#include "dialogs/typedbox.h"
#include "editing/stretch.h"

#include <array>
#include <memory>
#include <optional>

class ChosenTitles;
class MinuteSecondEntry;
class QComboBox;
class QLabel;
class QLineEdit;
class QRadioButton;
class QTabWidget;
class UpDown;

/// "Stretch/shrink movie duration": re-times the selected titles by one linear
/// map. The main window also uses it without a person, on its first tab.
class frmStretch : public ListDialog {
    Q_OBJECT

  public:
    frmStretch(TitleList& list, QWidget* parent);

    QTabWidget* TS;
    std::array<QWidget*, 3> PB;

    QLineEdit* txtFirstSubtitle;
    UpDown* UDFirst;
    QLineEdit* txtLastSubtitle;
    UpDown* UDLast;
    QLabel* lblTitleInfo;

    QLineEdit* txtCurrent;
    QRadioButton* optStretch;
    QRadioButton* optShrink;
    MinuteSecondEntry* Amount;

    QComboBox* cboCurrentRate;
    QComboBox* cboDesiredRate;
    QLabel* lblRateInfo;

    QPushButton* cmdOK;
    QPushButton* cmdCancel;
    ChosenTitles* Chosen;

    void cmdOK_Click();
    void cmdCancel_Click();

  private:
    void LayOut();
    void LayOutTitles();
    void LayOutAmount();
    void LayOutRates();
    void Form_Load();
    void Form_Unload() override;
    /// The map that the selected tab asks for, and what is odd about it; nothing, after a
    /// message, when a box holds what it should not.
    std::optional<TimeMap> Map(QString& doubt);
    std::optional<TimeMap> TitlesMap(QString& doubt);
    /// Where a box holds no time, it counts as far as it can be read.
    double MomentIn(const TypedBox& box, const QLineEdit& text, QString& doubt) const;

    std::unique_ptr<TypedBox> m_first;
    std::unique_ptr<TypedBox> m_last;
    std::unique_ptr<TypedBox> m_currentRate;
    std::unique_ptr<TypedBox> m_desiredRate;
};
