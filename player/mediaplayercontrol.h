#pragma once

#include "player/player.h"

#include <QTimer>
#include <QWidget>

class JumpSlider;
class MediaPicture;
class QLabel;
class QMenu;
class QToolButton;

/// The embedded media player: the picture and, under it, its own controls
/// (play/pause, stop, a seek slider, times, rate, volume), with a right-click menu.
/// Its controls take the keyboard focus from the keyboard alone: a click on them leaves it
/// to the main window.
class MediaPlayerControl : public QWidget {
    Q_OBJECT

  public:
    /// The bar under the picture; its first pixels are left free for a strip of
    /// the window's own, which is laid over them. All this with texts of the usual size.
    static constexpr int ControlBarHeight = 34;
    static constexpr int StripLeft = 8;
    static constexpr int StripSpace = 120;

    explicit MediaPlayerControl(Player& player, QWidget* parent = nullptr);
    ~MediaPlayerControl() override;

    /// The bar's height with the texts as they are.
    int BarHeight() const;

    /// Shows a short text over the picture for two seconds.
    void ShowNote(const QString& text);
    /// Draws the title on the picture, while the user wants titles there.
    void ShowTitle(const QString& text);
    bool TitlesOnPicture() const { return m_titlesOnPicture; }
    void TitlesOnPicture(bool wanted);
    /// Titles that are placed by key go to where speech begins and ends, if the user wants it.
    bool SnapToSpeech() const { return m_snapToSpeech; }
    void SnapToSpeech(bool wanted) { m_snapToSpeech = wanted; }
    /// The button that shows and hides the lane with the film's sound: there is one
    /// for this film, and it is to be seen.
    void LaneButton(bool offered, bool shown);
    /// The button that fits the titles to the film's sound: the film has one, and there are
    /// titles.
    void FitButton(bool offered, bool enabled);
    /// A quiet line in the bar; "Fit..." in it does what the button does. Empty: none.
    void Hint(const QString& text);
    /// Tool tips name the keys that do the same.
    void NameKeys(const char* button, const QString& keys);

  signals:
    void LaneClicked();
    /// The film's own subtitles are wanted.
    void SubtitlesWanted();
    void FitClicked();
    void SnapChosen();

  protected:
    void contextMenuEvent(QContextMenuEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    QToolButton* MakeButton(const char* name, const QString& text);
    QLabel* MakeTime(const char* name, const QString& accessible);
    void MakeBar();
    void Listen();
    void ShowIcons();
    /// Everything but the position.
    void Refresh();
    void Follow(double position);
    /// The bar and its icons are as large as its texts.
    void FitFont();
    void FitBar();
    void Seek(int milliseconds);
    /// The mouse leaves the keyboard to the window.
    void GiveKeyboardBack(const QWidget& control);
    void ShowTip(QWidget& control, const QString& text);

    Player& m_player;
    QTimer m_follow;
    MediaPicture* m_picture = nullptr;
    QString m_title;
    bool m_titlesOnPicture = true;
    bool m_snapToSpeech = false;
    QWidget* m_bar = nullptr;
    QToolButton* m_play = nullptr;
    QToolButton* m_stop = nullptr;
    JumpSlider* m_slider = nullptr;
    QLabel* m_elapsed = nullptr;
    QLabel* m_slash = nullptr;
    QLabel* m_total = nullptr;
    QToolButton* m_mute = nullptr;
    JumpSlider* m_volume = nullptr;
    QToolButton* m_rate = nullptr;
    QMenu* m_rates = nullptr;
    QLabel* m_hint = nullptr;
    QString m_hintText;
    QToolButton* m_fit = nullptr;
    bool m_fitOffered = false;
    QToolButton* m_lane = nullptr;
    bool m_laneOffered = false;
};
