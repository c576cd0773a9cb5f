#pragma once

#include "dialogs/titlelist.h"
#include "listeditor/editorhost.h"
#include "listeditor/listactions.h"

#include <QMainWindow>
#include <QPointer>

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

class RowDelegate;
struct FitSource;
class RowModel;
class Versions;
enum class RowColour : std::uint8_t;
class TitleView;
class frmFind;

/// "Subtitle Editor": a row per title, and the commands on them. One instance,
/// which deletes itself when it is closed.
class frmList final : public QMainWindow, public TitleList {
    Q_OBJECT

  public:
    frmList(EditorHost& host, QWidget* parent);
    ~frmList() override;

    TitleView* LV;
    QToolBar* TB = nullptr;

    /// The titles marked first and second for stretching.
    std::int32_t FirstMark = 0;
    std::int32_t SecondMark = 0;

    /// The rows that buttons, menus, shortcuts and `DoCommand` are made from.
    static std::span<const ListCommand> Commands();
    /// Runs the command with that key; there is no error in an unknown one.
    void DoCommand(const QString& key);
    void CorrectSpelling();
    void ConvertItalics();
    /// Keeps the first mark before the second. The rows keep their colours.
    void MarkChanged();

    /// Stretches the selected titles so that the marked ones start at the blue and the
    /// green mark.
    void StretchToMarks();

    /// Selects these titles instead, in ascending order, and scrolls to the first. The player
    /// stays where it is.
    void SelectTitles(std::span<const std::int32_t> titles);
    /// The main window has come to title i while playing.
    void FollowTitle(std::int32_t i);
    /// Title i is on at the film's position; 0: none is. Its row is marked at the edge.
    void ShowPlaying(std::int32_t i);
    void UndoPossible(bool possible);

    void LV_ItemClick(std::int32_t row);
    void LV_DblClick();
    void LV_KeyPress(int keyAscii);
    void LV_KeyDown(int keyCode);
    void LV_Typing(std::int32_t row, const QString& text);
    void LV_AfterLabelEdit(std::int32_t row, const QString& newString);
    void mnuTimeFirst_Click();
    void mnuTimeSecond_Click();
    void mnuTimeFirstHere_Click();
    void mnuTimeSecondHere_Click();
    void mnuTimeFitSound_Click();
    void mnuTimeFitFile_Click();
    void mnuViewFont_Click();
    void mnuViewToolbar_Click();

    Document& document() override { return m_host.document(); }
    QWidget* Window() override { return this; }
    QFont ListFont() const override;
    std::int32_t RowCount() const override;
    std::vector<std::int32_t> SelectedRows() const override;
    std::int32_t SelectedItem() const override;
    void UnselectItem() override;
    void SelectAll() override;
    QString RowText(std::int32_t row) const override;
    QString RowStart(std::int32_t row) const override;
    QString RowDuration(std::int32_t row) const override;
    void SetRow(std::int32_t row, const QString& text, double start, double duration) override;
    std::int32_t FirstMarkedTitle() const override { return FirstMark; }
    std::int32_t SecondMarkedTitle() const override { return SecondMark; }
    void ShowEdited(std::int32_t row) override;
    void ShowAllEdited(std::span<const std::int32_t> rows) override;
    void LoadList() override;
    void ShowInstead(const SUBTITLES& titles) override;
    void ShowOwn() override;
    void GoToTitle(std::int32_t index) override;

  signals:
    /// Other rows are selected.
    void Selected();

  protected:
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void LayOut();
    void PlaceForFirstTime();
    void ConnectList();
    void Form_Load();
    void Form_Resize();
    void Form_QueryUnload();
    void Form_Unload();
    void LoadSettings();
    void SaveSettings();
    void LoadColumns();
    void UpdateColours();

    void RunByKey(const ListCommand& command);
    void Run(const ListCommand& command);
    void Undo();
    void Edit();
    void Find();
    void FindNext();
    void Stretch();
    void Shift();
    void Insert();
    void Delete();
    void MoveTitles(bool (*change)(SUBTITLES&, std::int32_t));
    void ChangeDuration(bool (*change)(SUBTITLES&, std::int32_t));
    void ShowCorrected(const std::vector<std::int32_t>& rows);
    void RemoveRows(const std::vector<std::int32_t>& rows, bool lastStaysSelected);
    void OpenEdit();
    void OpenFit(FitSource source);

    SUBTITLES& Subt() { return m_host.document().Subt; }
    /// Somebody else than this window may have changed the titles.
    void Document_Change(const Change& change);
    void RowsChanged(const Change& change);
    void AnotherDocument();
    void UpdateVersions();
    void GoBack();
    void OpenVersions();
    void SelectionChanged();
    void SelectRow(std::int32_t row);
    void SelectOnly(std::int32_t row);
    void ScrollTo(std::int32_t row);
    bool IsMark(std::int32_t row) const { return row == FirstMark || row == SecondMark; }
    /// The marked rows get the colour of plain ones.
    void UncolourMarks();
    /// Marks the first and the last title.
    void MarkEnds();
    void MarkDocumentEnds();
    /// The player's position, or nothing after a message that there is no film.
    std::optional<double> AskPosition();
    void Mark(std::int32_t& mark, std::int32_t otherMark, RowColour colour);
    void UpdateDelete();

    EditorHost& m_host;
    RowModel* m_rows;
    ListActions m_actions;
    RowDelegate* m_delegate = nullptr;
    QPointer<frmFind> m_find;
    Connection m_connection;
    /// Of the document that the rows show.
    std::uint32_t m_number = 0;
    /// A command of this window is at work, which writes its rows itself.
    bool m_ownChange = false;
    /// What was selected and seen before other titles were shown.
    struct View {
        std::vector<std::int32_t> selected;
        std::int32_t current;
        int scrolled;
    };
    std::optional<View> m_before;
    bool m_shown = false;
    bool m_unloaded = false;
};

/// "Go back to before “Stretch”", after the latest of the versions.
QString GoBackCaption(const Versions& versions);
