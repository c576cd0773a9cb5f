#pragma once

#include "player/player.h"

#include <QObject>

class QGridLayout;
class QLabel;
class QLineEdit;
class QPushButton;

/// The playback selection: two buttons that set it and two boxes that show it.
class SelectionGroup : public QObject {
    Q_OBJECT

  public:
    SelectionGroup(Player& player, QWidget* panel);

    /// From that row and column of the grid on.
    void LayOut(QGridLayout& grid, int row, int column);
    void FitTexts();
    /// The player has a new state.
    void Refresh();

  private:
    void cmdSelStart_Click();
    void cmdSelEnd_Click();
    void ShowSelection();

    Player& m_player;
    QPushButton* cmdSelStart;
    QLabel* Label7;
    QLineEdit* txtSelStart;
    QPushButton* cmdSelEnd;
    QLabel* Label8;
    QLineEdit* txtSelEnd;
};
