#pragma once

#include "dialogs/titlelist.h"
#include "editing/stretch.h"

#include <QWidget>

#include <cstdint>
#include <vector>

class QLabel;
class QPushButton;

/// Says in a dialog which titles it will change: those whose rows were selected when it
/// was opened, or all of them at a click. Where there are none, OK is off.
class ChosenTitles : public QWidget {
    Q_OBJECT

  public:
    /// The verb begins the sentence: "Moves".
    ChosenTitles(TitleList& list, const QString& verb, QPushButton* cmdOK, QWidget* parent);

    QLabel* lblTitles;
    QPushButton* cmdSelectAll;

    /// The titles' numbers, ascending.
    const std::vector<std::int32_t>& Numbers() const { return m_numbers; }
    /// Can they be mapped like that? Says why not, and asks where it is odd; false: no.
    bool MayMap(QWidget* window, const TimeMap& map, const QString& doubt = {}) const;

    void cmdSelectAll_Click();

  private:
    QString NoneChosen() const;
    void Show();

    TitleList& m_list;
    QString m_verb;
    QPushButton* m_cmdOK;
    std::vector<std::int32_t> m_numbers;
};
