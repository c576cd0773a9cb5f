#include "cli/library.h"

#include "cli/pairs.h"
#include "cli/syncreport.h"
#include "model/numbers.h"

#include <algorithm>
#include <atomic>
#include <iomanip>
#include <mutex>
#include <thread>

namespace {

/// Puts a file that is complete where nothing may be yet.
bool PutInPlace(const std::filesystem::path& from, const std::filesystem::path& to) {
    std::error_code error;
    // A link is refused where the name is taken, in one step.
    std::filesystem::create_hard_link(from, to, error);
    if (!error) {
        std::filesystem::remove(from, error);
        return true;
    }
    // Not every file system has links.
    std::error_code missing;
    if (!std::filesystem::exists(to, missing)) {
        std::filesystem::rename(from, to, error);
        if (!error)
            return true;
    }
    std::filesystem::remove(from, missing);
    return false;
}

class Library {
  public:
    Library(const LibraryWish& wish, std::vector<FilmPair> pairs, std::ostream& out,
            std::ostream& err)
        : m_wish(wish)
        , m_pairs(std::move(pairs))
        , m_out(out)
        , m_err(err) {
        for (const FilmPair& pair : m_pairs)
            m_files += pair.titles.size();
    }

    bool Run() {
        Row("verdict", "sure", "offset", "rate", "pieces", "file");
        ShowBar();
        {
            std::vector<std::jthread> threads;
            const auto jobs = std::min<std::size_t>(m_wish.jobs, m_pairs.size());
            for (std::size_t i = 1; i < jobs; ++i)
                threads.emplace_back([this] { Work(); });
            Work();
        }
        m_err << '\n';
        m_out << m_files << " files: " << m_fitted << " fitted, " << m_right << " right, "
              << m_unsure << " unsure, " << m_before << " done before, " << m_failed << " failed\n";
        return m_failed == 0;
    }

  private:
    void Work() {
        for (std::size_t i = m_next++; i < m_pairs.size(); i = m_next++)
            FitFilm(m_pairs[i]);
    }

    void FitFilm(const FilmPair& pair) {
        std::vector<std::filesystem::path> open;
        for (const std::filesystem::path& titles : pair.titles) {
            std::error_code error;
            if (std::filesystem::exists(FittedName(titles), error))
                Count(m_before);
            else
                open.push_back(titles);
        }
        if (open.empty())
            return;
        Reference::Wish wish = m_wish.fit;
        wish.file = pair.film;
        const unsigned cores = std::max(1U, std::thread::hardware_concurrency());
        wish.threads = std::max(1U, cores / std::max(1U, m_wish.jobs));
        std::string message;
        const std::optional<Reference> reference = Reference::Open(wish, message);
        for (const std::filesystem::path& titles : open) {
            if (reference)
                FitFile(*reference, titles);
            else
                Fail(titles, Shown(pair.film) + ": " + message);
        }
    }

    void FitFile(const Reference& reference, const std::filesystem::path& titles) {
        TitleFile file;
        std::string message;
        if (!file.Load(titles, m_wish.fit.manners, message)) {
            Fail(titles, message);
            return;
        }
        FitSeconds seconds;
        const std::vector<FitTitle> given = file.Titles();
        const Fit fit = reference.FitTo(given, seconds);
        if (fit.verdict == FitVerdict::Fitted && !m_wish.dryRun) {
            file.SetTimes(ApplyFit(given, fit));
            if (!Write(file, titles, message)) {
                Fail(titles, message);
                return;
            }
        }
        std::size_t& count = fit.verdict == FitVerdict::Fitted  ? m_fitted
                             : fit.verdict == FitVerdict::Right ? m_right
                                                                : m_unsure;
        Tell(titles, fit);
        Count(count);
    }

    /// Writes under another name first, so that a run that is stopped leaves nothing that looks
    /// like a result.
    bool Write(const TitleFile& file, const std::filesystem::path& titles, std::string& message) {
        const std::filesystem::path name = FittedName(titles);
        std::filesystem::path unfinished = titles;
        unfinished.replace_extension();
        unfinished += ".unfinished";
        unfinished += titles.extension();
        if (!file.Save(unfinished, m_wish.fit.manners, message)) {
            std::error_code error;
            std::filesystem::remove(unfinished, error);
            return false;
        }
        if (PutInPlace(unfinished, name))
            return true;
        message = Shown(name) + " cannot be written or is there already";
        return false;
    }

    std::string Shown(const std::filesystem::path& file) const {
        return NameOf(file.lexically_relative(m_wish.folder));
    }

    void Tell(const std::filesystem::path& titles, const Fit& fit) {
        const std::lock_guard lock(m_mutex);
        const std::string sure = RoundedText(fit.confidence, 0.01);
        if (fit.verdict == FitVerdict::Fitted)
            Row(VerdictName(fit.verdict), sure, ThousandthsText(fit.pieces.front().offset),
                RoundedText(fit.pieces.front().rate, 1e-4), std::to_string(fit.pieces.size()),
                Shown(titles));
        else
            Row(VerdictName(fit.verdict), sure, "", "", "", Shown(titles));
    }

    void Row(std::string_view verdict, std::string_view sure, std::string_view offset,
             std::string_view rate, std::string_view pieces, std::string_view file) {
        m_out << std::left << std::setw(8) << verdict << std::right << std::setw(5) << sure
              << std::setw(11) << offset << std::setw(8) << rate << std::setw(8) << pieces << "  "
              << file << std::endl;
    }

    void Fail(const std::filesystem::path& titles, std::string message) {
        std::erase(message, '\r');
        std::replace(message.begin(), message.end(), '\n', ' ');
        {
            const std::lock_guard lock(m_mutex);
            Row("failed", "", "", "", "", Shown(titles) + ": " + message);
        }
        Count(m_failed);
    }

    void Count(std::size_t& what) {
        const std::lock_guard lock(m_mutex);
        ++what;
        ++m_done;
        ShowBar();
    }

    void ShowBar() {
        constexpr std::size_t Width = 40;
        const std::size_t full = m_files > 0 ? m_done * Width / m_files : Width;
        m_err << '\r' << '[' << std::string(full, '#') << std::string(Width - full, '.') << "] "
              << m_done << " of " << m_files << std::flush;
    }

    const LibraryWish& m_wish;
    const std::vector<FilmPair> m_pairs;
    std::ostream& m_out;
    std::ostream& m_err;
    std::size_t m_files = 0;
    std::atomic<std::size_t> m_next = 0;
    /// Guards what follows and both streams.
    std::mutex m_mutex;
    std::size_t m_done = 0;
    std::size_t m_fitted = 0;
    std::size_t m_right = 0;
    std::size_t m_unsure = 0;
    std::size_t m_before = 0;
    std::size_t m_failed = 0;
};

} // namespace

bool FitLibrary(const LibraryWish& wish, std::ostream& out, std::ostream& err) {
    return Library(wish, PairsIn(wish.folder), out, err).Run();
}
