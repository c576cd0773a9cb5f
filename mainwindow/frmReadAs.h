#pragma once

#include "mainwindow/choicedialog.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Asks for the code page that a subtitle file is to be read in. Each is shown with what it
/// makes of the file's own words.
class frmReadAs : public ChoiceDialog {
    Q_OBJECT

  public:
    /// The file's bytes, and the page that it was read in.
    frmReadAs(std::string_view bytes, const std::string& current, QWidget* parent);

    /// Its usual name, or `GuessedPage`.
    std::optional<std::string> AskPage();

  private:
    std::vector<std::string> m_pages;
};

/// Of a text in a code page, the line that tells the most about it: the one with the most
/// bytes beyond ASCII of the first such ones.
std::string_view TellingLine(std::string_view bytes);
