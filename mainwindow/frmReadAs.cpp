#include "mainwindow/frmReadAs.h"

#include "base/ascii.h"
#include "base/codepages.h"
#include "formats/guess.h"

#include <algorithm>

namespace {

struct Page {
    const char* name;
    const char* languages;
};
constexpr Page Pages[] = {
    {"windows-1252", "Western European"},
    {"ISO-8859-15", "Western European (ISO)"},
    {"windows-1250", "Central European"},
    {"ISO-8859-2", "Central European (ISO)"},
    {"windows-1251", "Cyrillic"},
    {"KOI8-R", "Russian (KOI8)"},
    {"KOI8-U", "Ukrainian (KOI8)"},
    {"ISO-8859-5", "Cyrillic (ISO)"},
    {"IBM866", "Cyrillic (DOS)"},
    {"windows-1253", "Greek"},
    {"ISO-8859-7", "Greek (ISO)"},
    {"windows-1254", "Turkish"},
    {"windows-1255", "Hebrew"},
    {"ISO-8859-8", "Hebrew (ISO)"},
    {"windows-1256", "Arabic"},
    {"ISO-8859-6", "Arabic (ISO)"},
    {"windows-1257", "Baltic"},
    {"windows-1258", "Vietnamese"},
    {"TIS-620", "Thai"},
    {"SHIFT_JIS", "Japanese (Shift JIS)"},
    {"EUC-JP", "Japanese (EUC)"},
    {"GB18030", "Chinese, simplified"},
    {"BIG5", "Chinese, traditional"},
    {"UHC", "Korean"},
};

/// How many such lines are compared, and how much of the best is shown.
constexpr int LinesCompared = 200;
constexpr qsizetype LettersShown = 48;

std::ptrdiff_t BeyondAscii(std::string_view line) {
    return std::count_if(line.begin(), line.end(),
                         [](char byte) { return static_cast<unsigned char>(byte) >= 0x80; });
}

} // namespace

std::string_view TellingLine(std::string_view bytes) {
    std::string_view telling;
    std::ptrdiff_t most = 0;
    for (int compared = 0; !bytes.empty() && compared < LinesCompared;) {
        const std::string_view line = bytes.substr(0, bytes.find_first_of("\r\n"));
        bytes.remove_prefix(std::min(line.size() + 1, bytes.size()));
        const std::ptrdiff_t beyond = BeyondAscii(line);
        compared += beyond > 0 ? 1 : 0;
        if (beyond > most) {
            most = beyond;
            telling = line;
        }
    }
    return telling;
}

frmReadAs::frmReadAs(std::string_view bytes, const std::string& current, QWidget* parent)
    : ChoiceDialog(parent, "frmReadAs", tr("Read as"),
                   tr("Read the subtitle file in this code page:"),
                   {tr("Code page"), tr("For"), tr("Looks like")}) {
    const std::string_view line = TellingLine(bytes);
    const std::string guessed = GuessCodePage(bytes);
    const auto add = [&](const std::string& page, const QString& name, const QString& languages) {
        const QString words = QString::fromStdString(CodePage(page).ToUtf8(line));
        AddLine({name, languages, words.left(LettersShown)});
    };
    add(guessed, QString::fromStdString(guessed), tr("the best guess"));
    m_pages.emplace_back(GuessedPage);
    for (const Page& page : Pages) {
        if (!CodePage::Knows(page.name))
            continue;
        add(page.name, QString::fromLatin1(page.name), tr(page.languages));
        m_pages.emplace_back(page.name);
    }
    LinesAdded();
    for (std::size_t i = 1; i < m_pages.size(); ++i)
        if (AsciiLower(m_pages[i]) == AsciiLower(current))
            ChooseLine(static_cast<int>(i));
    // Room for the file's words.
    constexpr int Letters = 110;
    constexpr int Lines = 26;
    resize(fontMetrics().averageCharWidth() * Letters, fontMetrics().lineSpacing() * Lines);
}

std::optional<std::string> frmReadAs::AskPage() {
    const std::optional<int> line = Ask();
    return line ? std::optional(m_pages[static_cast<std::size_t>(*line)]) : std::nullopt;
}
