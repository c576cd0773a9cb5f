#pragma once

#include "formats/recoverycopy.h"
#include "listeditor/editorhost.h"
#include "mainwindow/buttonstrip.h"
#include "mainwindow/displaywalker.h"
#include "mainwindow/filesaver.h"
#include "mainwindow/placing.h"
#include "mainwindow/timespinner.h"
#include "mainwindow/troubleline.h"
#include "model/document.h"
#include "platform/commondialogs.h"
#include "platform/keyrepeat.h"
#include "player/player.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

struct LoadResult;
class MediaPlayerControl;
class QKeyEvent;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QRadioButton;
class QTimer;
class StripPictures;
class TransportStrip;
class UpDown;
class frmList;

/// The main window, open for the whole run: the player, the subtitles in step
/// with it, the files, and the placing of titles by key. It owns the document.
class frmQuelmar : public QWidget, public EditorHost {
    Q_OBJECT

    static constexpr std::int16_t SpaceKey = 32;
    static constexpr int FirstRepeatInterval = 750;
    static constexpr int NextRepeatInterval = 250;

    Document m_document;

  public:
    frmQuelmar();
    explicit frmQuelmar(std::unique_ptr<Player> player);
    ~frmQuelmar() override;

    SUBTITLES& Subt = m_document.Subt;
    /// The media file named in `txtAVI` exists and the player took it.
    bool AVIFileOK = false;
    /// The virtual-key code of the key that places titles: the space bar at every start.
    std::int16_t ActionKey = SpaceKey;

    /// Names both files, as if they were typed; an empty name is left out.
    void OpenFiles(const QString& media, const QString& subtitles);

    /// A line that stays at the top of the window until there is no more trouble.
    void ShowTrouble(const QString& trouble) { lblTrouble->Say(trouble); }

    /// What belongs to the document beside its titles.
    RecoveryNotes Notes() const;
    /// Puts recovered work in place of this document, as changed.
    void RestoreDocument(RecoveredDocument document);

    Document& document() override { return m_document; }
    void MediaPosition(double seconds) override;
    std::optional<double> FilmPosition() const override;
    QRect FilmPlace() const override;
    std::int32_t ShownTitle() const override { return m_walker.CurrentTitle(); }
    void EditButtonsEnabled(bool enabled) override;

  signals:
    /// The user answered No when asked to save.
    void SaveDeclined();
    /// An existing file is about to be emptied for writing.
    void FileEmptying();
    /// The window was closed, and nothing can keep it open any more.
    void Closed();

  protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    // Lifecycle
    void MakeControls();
    void LayOutDisplayPanel();
    void LayOutFilePanel();
    void ConnectControls();
    void ConnectPlayer();
    void DrawToolIcons();
    void SizePanels();
    void Form_Load();
    void Form_Resize();
    bool Form_Unload();
    void cmdExit_Click();
    void ReadSettings();
    void WriteSettings() const;

    // Files
    void cmdBrowseAVI_Click();
    void txtAVI_Change();
    void cmdBrowseSRT_Click();
    void txtSRT_Change();
    void EnableMediaControls();
    bool AskSaveFirst();
    void StartNewFile();
    void LoadSubtitles();
    LoadResult LoadDocument();
    bool SaveSubtitles();
    void cmdSave_Click();
    double AskFrameRate();
    void PrepareStartingName();

    // Playback display
    void MP_PlayStateChange(int newState);
    void MP_PositionChange(double newPosition);
    void Timer1_Timer();
    void txtTime_Change();
    void UDTime_MouseDown(int y);
    void UDTime_MouseUp();
    void UDTime_DownClick();
    void UDTime_UpClick();
    void tmrUDTime_Timer();
    void LocateCurrentTitle(double position);
    /// false: nothing was left to do at the position.
    bool WalkOn(double position);
    void ShowTime(double position);
    void ShowTexts(const DisplayTexts& texts);
    DisplayMode Mode() const;
    TimeSpinner::Place SpinnerPlace() const;
    void JumpTo(std::optional<double> position);

    // Positioning
    void optShow_Click();
    void optPosition_Click();
    void txtKey_Click();
    bool KeyPreview(QWidget& receiver, QEvent& event);
    bool Form_KeyDown(const QKeyEvent& event);
    bool Form_KeyUp(const QKeyEvent& event);
    bool Form_KeyPress(const QWidget& receiver, const QKeyEvent& event) const;
    /// The repeats of a held key are left out of these two.
    void ActionKeyPressed(double position);
    void ActionKeyReleased(double position);
    void tmrRelease_Timer();
    bool IsActionKey(const QKeyEvent& event) const;
    double PositionOf(std::chrono::milliseconds age) const;

    // Playback selection and buttons
    void picButtons_MouseMove(bool mouseHeld, double x, double y);
    void picButtons_MouseDown();
    void picButtons_MouseUp();
    void picButtons_EnabledChange();
    void tmrPosButtons_Timer();
    void cmdSelStart_Click();
    void cmdSelEnd_Click();
    void ShowSelection();
    void cmdBlue_Click();
    void cmdGreen_Click();
    void cmdAdjust_Click();
    void cmdEdit_Click();
    /// The list editor while it is loaded.
    frmList* OpenList() const;
    void Subt_UndoChangedListLength();
    void Subt_UndoPossible(bool possible);

    std::unique_ptr<Player> m_player;
    std::string m_codePage;
    std::int32_t m_lagMilliseconds = 0;
    CommonDialog DLG;
    FileSaver m_saver{this, DLG};
    TroubleLine* lblTrouble = new TroubleLine(this);

    bool m_subtitleFileExists = false;
    bool m_mediaActive = false;
    bool m_timeBoxUpdating = false;
    DisplayWalker m_walker{m_document.Subt};
    Placing m_placing;
    KeyRepeat m_keyRepeat;
    /// The position of a release that may turn out to be a repeat's.
    std::optional<double> m_waitingRelease;
    ButtonStrip m_strip;
    TimeSpinner m_spinner;
    QElapsedTimer m_sinceTick;
    QPointer<frmList> m_list;

    MediaPlayerControl* MP = nullptr;
    TransportStrip* picButtons = nullptr;
    StripPictures* IMGL = nullptr;
    QTimer* tmrPosButtons = nullptr;
    QTimer* tmrUDTime = nullptr;
    QTimer* Timer1 = nullptr;
    QTimer* tmrRelease = nullptr;

    QWidget* PB2 = nullptr;
    QPlainTextEdit* txtSubtitle = nullptr;
    QLabel* Label5 = nullptr;
    QPlainTextEdit* txtNextSubtitle = nullptr;
    QLabel* Label1 = nullptr;
    QLineEdit* txtTime = nullptr;
    UpDown* UDTime = nullptr;
    QLabel* Label4 = nullptr;
    QLineEdit* txtKey = nullptr;
    QPushButton* cmdBlue = nullptr;
    QPushButton* cmdGreen = nullptr;
    QPushButton* cmdAdjust = nullptr;
    QPushButton* cmdSelStart = nullptr;
    QLabel* Label7 = nullptr;
    QLineEdit* txtSelStart = nullptr;
    QPushButton* cmdSelEnd = nullptr;
    QLabel* Label8 = nullptr;
    QLineEdit* txtSelEnd = nullptr;

    QWidget* PB = nullptr;
    QLabel* Label2 = nullptr;
    QLineEdit* txtAVI = nullptr;
    QPushButton* cmdBrowseAVI = nullptr;
    QLabel* Label3 = nullptr;
    QLineEdit* txtSRT = nullptr;
    QPushButton* cmdBrowseSRT = nullptr;
    QLabel* Label6 = nullptr;
    QRadioButton* optShow = nullptr;
    QRadioButton* optPosition = nullptr;
    QPushButton* cmdEdit = nullptr;
    QPushButton* cmdSave = nullptr;
    QPushButton* cmdExit = nullptr;
};
