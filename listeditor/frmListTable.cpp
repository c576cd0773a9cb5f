#include "editing/corrections.h"
#include "editing/listcommands.h"
#include "listeditor/frmList.h"

#include <array>

// The order is that of the toolbar's buttons. Some of their captions show what their
// command mends.
std::span<const ListCommand> frmList::Commands() {
    static constexpr std::array Rows{
        ListCommand{.key = "Undo",
                    .caption = "Undo",
                    .toolTip = "Undo the last change",
                    .sign = Sign::Undo,
                    .entry = "mnuEditUndo",
                    .entryCaption = "&Undo",
                    .menu = ListMenu::Edit,
                    .place = 10,
                    .shortcut = "Ctrl+Z",
                    .needs = Needs::UndoSteps,
                    .run =
                        [](frmList& list) {
                            list.Undo();
                        }},
        ListCommand{.key = "Find",
                    .caption = "Find",
                    .sign = Sign::Find,
                    .entry = "mnuEditFind",
                    .entryCaption = "&Find",
                    .menu = ListMenu::Edit,
                    .place = 60,
                    .shortcut = "Ctrl+F",
                    .run =
                        [](frmList& list) {
                            list.Find();
                        }},
        ListCommand{.key = "Italic",
                    .caption = "/I/t/a/l/i/c",
                    .sign = Sign::Italic,
                    .run = [](frmList& list) { list.ConvertItalics(); },
                    .keyIsChange = true},
        ListCommand{.key = "Spelling",
                    .caption = "SpeIIlng",
                    .sign = Sign::Spelling,
                    .entry = "mnuEditSpell",
                    .entryCaption = "&Spelling correction",
                    .menu = ListMenu::Edit,
                    .place = 40,
                    .run = [](frmList& list) { list.CorrectSpelling(); },
                    .keyIsChange = true},
        ListCommand{.key = "Edit",
                    .caption = "Edit",
                    .toolTip = "Edit subtitle text, start time and duration",
                    .sign = Sign::Edit,
                    .entry = "mnuEditEdit",
                    .entryCaption = "&Open Title...",
                    .menu = ListMenu::Edit,
                    .place = 30,
                    .shortcut = "Return",
                    .needs = Needs::CurrentTitle,
                    .run =
                        [](frmList& list) {
                            list.Edit();
                        }},
        ListCommand{.key = "Insert",
                    .caption = "Insert",
                    .toolTip = "Insert a new title before the current one",
                    .sign = Sign::Insert,
                    .entry = "mnuEditInsert",
                    .entryCaption = "&Insert",
                    .menu = ListMenu::Edit,
                    .place = 80,
                    .shortcut = "Ins",
                    .needs = Needs::CurrentTitle,
                    .run =
                        [](frmList& list) {
                            list.Insert();
                        }},
        ListCommand{.key = "Delete",
                    .caption = "Delete",
                    .toolTip = "Delete the selected title(s)",
                    .sign = Sign::Delete,
                    .entry = "mnuEditDelete",
                    .entryCaption = "&Delete",
                    .menu = ListMenu::Edit,
                    .place = 90,
                    .shortcut = "Del",
                    .needs = Needs::TwoRows,
                    .run =
                        [](frmList& list) {
                            list.Delete();
                        }},
        ListCommand{.key = "Sooner",
                    .caption = "Sooner",
                    .toolTip = "Display subtitle sooner",
                    .sign = Sign::Sooner,
                    .entry = "mnuTimeSooner",
                    .entryCaption = "Show &Earlier",
                    .menu = ListMenu::Timing,
                    .place = 10,
                    .shortcut = "Ctrl+Left",
                    .run =
                        [](frmList& list) {
                            list.MoveTitles(ShowSooner);
                        }},
        ListCommand{.key = "Later",
                    .caption = "Later",
                    .toolTip = "Display subtitle later",
                    .sign = Sign::Later,
                    .entry = "mnuTimeLater",
                    .entryCaption = "Show &Later",
                    .menu = ListMenu::Timing,
                    .place = 20,
                    .shortcut = "Ctrl+Right",
                    .run =
                        [](frmList& list) {
                            list.MoveTitles(ShowLater);
                        }},
        ListCommand{.key = "Shorter",
                    .caption = "Shorter",
                    .toolTip = "Make subtitle duration shorter",
                    .sign = Sign::Shorter,
                    .entry = "mnuTimeShorter",
                    .entryCaption = "Show &Shorter",
                    .menu = ListMenu::Timing,
                    .place = 30,
                    .shortcut = "Ctrl+Shift+Left",
                    .needs = Needs::CurrentTitle,
                    .run =
                        [](frmList& list) {
                            list.ChangeDuration(ShowShorter);
                        }},
        ListCommand{.key = "Longer",
                    .caption = "Longer",
                    .toolTip = "Make subtitle duration longer",
                    .sign = Sign::Longer,
                    .entry = "mnuTimeLonger",
                    .entryCaption = "Show &Longer",
                    .menu = ListMenu::Timing,
                    .place = 40,
                    .shortcut = "Ctrl+Shift+Right",
                    .needs = Needs::CurrentTitle,
                    .run =
                        [](frmList& list) {
                            list.ChangeDuration(ShowLonger);
                        }},
        ListCommand{.key = "Stretch",
                    .caption = "Stretch",
                    .toolTip = "Adjust (selected) subtitle times to movie length",
                    .sign = Sign::Stretch,
                    .entry = "mnuTimeStretch",
                    .entryCaption = "S&tretch...",
                    .menu = ListMenu::Timing,
                    .place = 80,
                    .shortcut = "Ctrl+T",
                    .run = [](frmList& list) { list.Stretch(); },
                    .keyIsChange = true},
        ListCommand{.key = "Shift",
                    .caption = "Shift",
                    .toolTip = "Move all (selected) subtitles in time by the same amount",
                    .sign = Sign::Shift,
                    .entry = "mnuTimeShift",
                    .entryCaption = "S&hift...",
                    .menu = ListMenu::Timing,
                    .place = 90,
                    .shortcut = "Ctrl+H",
                    .run = [](frmList& list) { list.Shift(); },
                    .keyIsChange = true},
        ListCommand{.key = "Bye",
                    .caption = "Bye",
                    .toolTip = "Close this window",
                    .sign = Sign::Bye,
                    .run =
                        [](frmList& list) {
                            list.close();
                        }},
        ListCommand{.key = "FindNext",
                    .entry = "mnuListFindNext",
                    .entryCaption = "Find &Next",
                    .menu = ListMenu::List,
                    .place = 10,
                    .shortcut = "F3",
                    .run =
                        [](frmList& list) {
                            list.FindNext();
                        }},
        ListCommand{.key = "SelectAll",
                    .entry = "mnuListSelectAll",
                    .entryCaption = "Select &All",
                    .menu = ListMenu::List,
                    .place = 20,
                    .shortcut = "Ctrl+A",
                    .run =
                        [](frmList& list) {
                            list.SelectAll();
                        }},
        ListCommand{.entry = "mnuEditBack",
                    .entryCaption = "&Go back",
                    .menu = ListMenu::Edit,
                    .place = 12,
                    .shortcut = "Ctrl+Shift+Z",
                    .needs = Needs::EarlierVersions,
                    .run =
                        [](frmList& list) {
                            list.GoBack();
                        }},
        ListCommand{.entry = "mnuEditVersions",
                    .entryCaption = "Earlier &versions...",
                    .menu = ListMenu::Edit,
                    .place = 14,
                    .needs = Needs::EarlierVersions,
                    .run =
                        [](frmList& list) {
                            list.OpenVersions();
                        }},
        ListCommand{.entry = "mnuTimeFirst",
                    .entryCaption = "Mark as &first for stretch timing",
                    .menu = ListMenu::Timing,
                    .place = 60,
                    .shortcut = "Ctrl+1",
                    .needs = Needs::CurrentTitle,
                    .run =
                        [](frmList& list) {
                            list.mnuTimeFirst_Click();
                        }},
        ListCommand{.entry = "mnuTimeSecond",
                    .entryCaption = "Mark as s&econd for stretch timing",
                    .menu = ListMenu::Timing,
                    .place = 70,
                    .shortcut = "Ctrl+2",
                    .needs = Needs::CurrentTitle,
                    .run =
                        [](frmList& list) {
                            list.mnuTimeSecond_Click();
                        }},
        ListCommand{.entry = "mnuTimeFirstHere",
                    .entryCaption = "First &mark starts here",
                    .menu = ListMenu::Timing,
                    .place = 110,
                    .shortcut = "Ctrl+B",
                    .everywhere = true,
                    .run =
                        [](frmList& list) {
                            list.mnuTimeFirstHere_Click();
                        }},
        ListCommand{.entry = "mnuTimeSecondHere",
                    .entryCaption = "Second ma&rk starts here",
                    .menu = ListMenu::Timing,
                    .place = 120,
                    .shortcut = "Ctrl+G",
                    .everywhere = true,
                    .run =
                        [](frmList& list) {
                            list.mnuTimeSecondHere_Click();
                        }},
        ListCommand{.entry = "mnuTimeStretchBoth",
                    .entryCaption = "Stretch to &both",
                    .menu = ListMenu::Timing,
                    .place = 130,
                    .shortcut = "Ctrl+J",
                    .everywhere = true,
                    .run =
                        [](frmList& list) {
                            list.StretchToMarks();
                        }},
        ListCommand{.entry = "mnuTimeFitSound",
                    .entryCaption = "&Fit to sound...",
                    .menu = ListMenu::Timing,
                    .place = 140,
                    .run =
                        [](frmList& list) {
                            list.mnuTimeFitSound_Click();
                        }},
        ListCommand{.entry = "mnuTimeFitFile",
                    .entryCaption = "Fit to another file...",
                    .menu = ListMenu::Timing,
                    .place = 150,
                    .run =
                        [](frmList& list) {
                            list.mnuTimeFitFile_Click();
                        }},
        ListCommand{.entry = "mnuViewFont",
                    .entryCaption = "&Font...",
                    .menu = ListMenu::View,
                    .place = 10,
                    .run =
                        [](frmList& list) {
                            list.mnuViewFont_Click();
                        }},
        ListCommand{.entry = "mnuViewToolbar",
                    .entryCaption = "&Toolbar",
                    .menu = ListMenu::View,
                    .place = 20,
                    .checkable = true,
                    .run =
                        [](frmList& list) {
                            list.mnuViewToolbar_Click();
                        }},
    };
    return Rows;
}
