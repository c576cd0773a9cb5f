#include "cli/titlefile.h"

#include "base/runtimeerror.h"
#include "base/savejournal.h"
#include "cli/repair.h"
#include "formats/save.h"

std::filesystem::path PathOf(const std::string& utf8) {
    return std::u8string(utf8.begin(), utf8.end());
}

std::string NameOf(const std::filesystem::path& path) {
    const std::u8string name = path.u8string();
    return {name.begin(), name.end()};
}

bool TitleFile::Load(const std::filesystem::path& file, const FileManners& manners,
                     std::string& message) {
    LoadHooks hooks;
    m_frameRate = manners.frameRate;
    hooks.askFrameRate = [&](std::optional<double> named) {
        if (named && manners.repair && !manners.frameRateGiven)
            m_frameRate = *named;
        return m_frameRate;
    };
    LoadOutcome outcome = LoadOutcome::NotOpened;
    try {
        const LoadResult result = LoadTitles(file, manners.codePage, m_titles, m_style, hooks);
        outcome = result.outcome;
        message = outcome == LoadOutcome::NotOpened ? "cannot be opened" : result.message;
        if (result.offer && manners.repair) {
            TakeRepaired(*result.offer, {}, m_titles, m_style, message);
            outcome = LoadOutcome::Complete;
        } else if (result.offer) {
            message += (message.empty() ? "" : " ") + RepairHint(*result.offer);
            if (NeedsRepair(*result.offer, manners.frameRateGiven))
                outcome = LoadOutcome::Corrupt;
        }
    } catch (const RuntimeError& error) {
        message = error.what();
        return false;
    }
    m_titles.UndoEnabled(false);
    m_damaged = outcome == LoadOutcome::Corrupt;
    return outcome == LoadOutcome::Complete || (m_damaged && manners.partial);
}

std::vector<FitTitle> TitleFile::Titles() const {
    std::vector<FitTitle> titles;
    titles.reserve(static_cast<std::size_t>(m_titles.Count()));
    for (std::int32_t i = 1; i <= m_titles.Count(); ++i)
        titles.push_back({m_titles.StartTime(i), m_titles.EndTime(i), m_titles.Text(i)});
    return titles;
}

void TitleFile::SetTimes(const std::vector<FitTimes>& times) {
    std::int32_t title = 0;
    for (const FitTimes& time : times)
        m_titles.SetTimes(++title, time.start, time.end);
}

bool TitleFile::Save(const std::filesystem::path& file, const FileManners& manners,
                     std::string& message) const {
    message = SaveRefusal(m_titles);
    if (!message.empty())
        return false;
    SaveHooks hooks;
    hooks.askFrameRate = [this] {
        return m_frameRate;
    };
    hooks.journalFolder = StateFolder();
    try {
        const SaveResult result = SaveTitles(file, manners.codePage, m_titles, m_style, hooks);
        message = result.message;
        return result.written;
    } catch (const RuntimeError& error) {
        message = error.what();
        return false;
    }
}
