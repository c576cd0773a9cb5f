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
    /// The player has a new film, and no selection.
    void Clear();

  private:
    void cmdSelStart_Click();
    void cmdSelEnd_Click();
    void ClearStart();
    void ClearEnd();
    void ShowSelection();

    Player& m_player;
    QPushButton* cmdSelStart;
    QLabel* Label7;
    QLineEdit* txtSelStart;
    QPushButton* cmdSelEnd;
    QLabel* Label8;
    QLineEdit* txtSelEnd;
    /// The end was taken away by hand: its box stays empty instead of naming the film's end.
    bool m_endCleared = false;
};
