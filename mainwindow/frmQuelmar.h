#pragma once

#include "formats/recoverycopy.h"
#include "listeditor/editorhost.h"
#include "mainwindow/mainstate.h"
#include "mainwindow/troubleline.h"

#include <QString>
#include <QWidget>

#include <cstdint>
#include <functional>
#include <memory>

class DisplayPanel;
class FileDrops;
class FilePanel;
class KeyPlacer;
class MainActions;
class MediaPlayerControl;
class SoundLane;
class QTimer;
class SubtitleFiles;
class TitleFit;
class TransportButtons;

/// The main window, open for the whole run. It owns the document and the player, and
/// makes and lays out what works on them: the player's control with the transport
/// buttons, the panel of the files, the panel of the display, and the placing by key.
class frmQuelmar : public QWidget, public EditorHost {
    Q_OBJECT

    static constexpr std::int16_t SpaceKey = 32;

    MainState m_state;

  public:
    frmQuelmar();
    explicit frmQuelmar(std::unique_ptr<Player> player);
    ~frmQuelmar() override;

    SUBTITLES& Subt = m_state.document.Subt;
    /// The media file named in `txtAVI` exists and the player took it.
    bool AVIFileOK = false;
    /// The virtual-key code of the key that places titles: the space bar at every start.
    std::int16_t ActionKey = SpaceKey;

    /// Opens a film and a subtitle file of these, told apart by what they hold; asks about
    /// subtitles that lie beside a film, and says which files were left out.
    void Open(const QStringList& files);
    /// Is the subtitle file open in another window of the program? Set by whoever knows.
    std::function<bool(const QString& subtitles)> OpenElsewhere;
    /// Names both files, as if they were typed; an empty name is left out.
    void OpenFiles(const QString& media, const QString& subtitles);

    /// A line that stays at the top of the window until there is no more trouble.
    void ShowTrouble(const QString& trouble) { lblTrouble->Say(trouble); }

    /// What belongs to the document beside its titles.
    RecoveryNotes Notes() const;
    /// Puts recovered work in place of this document, as changed.
    void RestoreDocument(RecoveredDocument document);

    Document& document() override { return m_state.document; }
    void MediaPosition(double seconds) override;
    void Listen(double from, double to) override;
    std::optional<double> FilmPosition() const override;
    QRect FilmPlace() const override;
    QRect PicturePlace() const override;
    std::optional<FitSource> FilmSound() const override;
    void ShowInstead(const SUBTITLES& titles) override;
    void ShowOwn() override;
    std::int32_t ShownTitle() const override;
    void Say(const QString& what) override;
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

  private:
    void ConnectParts();
    void tmrListen_Timer();
    void Form_Load();
    void Form_Resize();
    bool Form_Unload();
    QSize FirstSize();
    void SizePanels();
    void PlaceStrip();
    void ReadSettings();
    void WriteSettings() const;

    void MediaNamed();
    void EnableMediaControls();
    void MediaBrowsed();
    void OpenEditor();
    void OtherWindow();
    void SnapChosen();
    void ShowKeys();
    void NameKeys();
    void Subt_UndoChangedListLength();
    void Subt_UndoPossible(bool possible);
    void Document_Change(const Change& change);

    TroubleLine* lblTrouble = new TroubleLine(this);
    // In the order in which they are made; all go before the document and the player.
    std::unique_ptr<MediaPlayerControl> MP;
    std::unique_ptr<SubtitleFiles> m_files;
    std::unique_ptr<FilePanel> PB;
    std::unique_ptr<DisplayPanel> PB2;
    std::unique_ptr<TransportButtons> m_transport;
    std::unique_ptr<KeyPlacer> m_keys;
    std::unique_ptr<MainActions> m_actions;
    FileDrops* m_drops;
    std::unique_ptr<SoundLane> m_lane;
    std::unique_ptr<TitleFit> m_fit;
    /// Ends what `Listen` began.
    QTimer* tmrListen = nullptr;
    Connection m_connection;
    /// Of the document that the last change was in.
    std::uint32_t m_number = 0;
};
