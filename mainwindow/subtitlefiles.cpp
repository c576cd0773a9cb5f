#include "mainwindow/subtitlefiles.h"

#include "formats/guess.h"
#include "formats/load.h"
#include "mainwindow/frmFrameRate.h"
#include "mainwindow/frmLanguages.h"
#include "mainwindow/frmLoading.h"
#include "mainwindow/frmReadAs.h"
#include "mainwindow/frmTracks.h"
#include "mainwindow/patientfiles.h"
#include "media/mediafile.h"
#include "model/step.h"
#include "platform/messageboxes.h"
#include "platform/paths.h"
#include "platform/settings.h"
#include "tracks/filmname.h"
#include "tracks/filmtracks.h"

#include <QFileInfo>
#include <QThread>

namespace {

constexpr double FirstSubtitleStart = 1;
constexpr double FirstSubtitleEnd = 2;
/// In milliseconds.
constexpr unsigned LookEvery = 5;

/// Of what a file would hold: times and texts.
std::size_t HashOf(const SUBTITLES& titles) {
    constexpr std::size_t Spread = 0x9E3779B97F4A7C15U;
    constexpr unsigned Down = 29;
    auto hash = static_cast<std::size_t>(titles.Count());
    const auto add = [&hash](std::size_t value) {
        hash = (hash ^ value) * Spread + (hash >> Down);
    };
    for (std::int32_t i = 1; i <= titles.Count(); ++i) {
        add(std::hash<double>()(titles.StartTime(i)));
        add(std::hash<double>()(titles.EndTime(i)));
        add(std::hash<std::string_view>()(titles.Text(i)));
    }
    return hash;
}

/// All formats' patterns in one more entry.
QString SubtitleFilters() {
    const QString filter = QString::fromStdString(FormatFilter());
    QStringList patterns;
    const QStringList parts = filter.split('|');
    for (qsizetype k = 1; k < parts.size(); k += 2)
        patterns << parts[k].split(';');
    patterns.removeDuplicates();
    return filter + "|All subtitle files|" + patterns.join(';');
}

/// Message boxes break lines at line feeds.
QString MessageText(const std::string& message) {
    return QString::fromStdString(message).replace(QLatin1String("\r\n"), QLatin1String("\n"));
}

/// What was read from a film is not to be saved as one.
QString NameForSaving(const Document& document) {
    const QString name = QString::fromStdString(document.SubtitleFile);
    if (!IsFilmName(document.SubtitleFile))
        return name;
    const QFileInfo film(name);
    return film.path() + QLatin1Char('/') + film.completeBaseName() +
           QString::fromStdString(ExtensionFor(document.Style));
}

} // namespace

QString StartingName(const QString& lastName) {
    return lastName.left(lastName.indexOf(QLatin1Char('.')));
}

SubtitleFiles::SubtitleFiles(MainState& state, QWidget* window)
    : QObject(window)
    , m_state(state)
    , m_window(window)
    , m_codePage(Settings().String("CodePage").toStdString())
    , m_saver(window, state.DLG)
    , m_connection(state.document.Subscribe([this](const Change& change) {
        if (change.kind == Change::Kind::Saved)
            Settle();
    })) {}

void SubtitleFiles::Settle() {
    m_settledTitles = HashOf(m_state.document.Subt);
    m_settledChanges = m_state.document.Subt.Changes();
}

bool SubtitleFiles::Changed() const {
    const Document& document = m_state.document;
    return document.SubtitlesChanged ||
           (m_settledTitles && document.Subt.Changes() != m_settledChanges &&
            HashOf(document.Subt) != *m_settledTitles);
}

void SubtitleFiles::PrepareStartingName() {
    m_state.DLG.FileName = StartingName(m_state.DLG.FileName);
}

Decision SubtitleFiles::AskSaveFirst() {
    const Decision decision =
        AskDecision(m_window, QStringLiteral("You have changed subtitles.\nSave them first?"));
    if (decision == Decision::No)
        emit SaveDeclined();
    return decision;
}

bool SubtitleFiles::SaveIfWished() {
    if (!Changed())
        return true;
    const Decision decision = AskSaveFirst();
    if (decision == Decision::Yes)
        SaveSubtitles();
    if (decision == Decision::No)
        Settle();
    return decision != Decision::None;
}

std::optional<QString> SubtitleFiles::Browse() {
    if (Changed()) {
        const Decision decision = AskSaveFirst();
        if (decision == Decision::None || (decision == Decision::Yes && !SaveSubtitles()))
            return {};
        m_state.document.SubtitlesChanged = false;
        Settle();
    }
    CommonDialog& dialog = m_state.DLG;
    PrepareStartingName();
    dialog.Filter = SubtitleFilters();
    dialog.PickedFilter = m_filter;
    dialog.Title = QStringLiteral("Select an existing file or enter a new filename");
    dialog.PickedExtension.clear();
    dialog.FileMustExist = false;
    if (!dialog.ShowOpen(m_window))
        return {};
    m_filter = dialog.PickedFilter;
    return dialog.FileName;
}

void SubtitleFiles::StartNewFile() {
    Document& document = m_state.document;
    const Step step(document.Subt, "New file", Step::Undo::Emptied);
    document.BeginOther();
    document.Subt.Clear();
    document.Style = {};
    document.Subt.Add(FirstSubtitleStart, FirstSubtitleEnd, "First subtitle");
    document.Subt.UndoEnabled(true);
    OpenedWithoutFile();
}

void SubtitleFiles::OpenedWithoutFile() {
    emit Opened();
    m_saver.Opened({});
    m_state.document.Saved();
    emit Mended({});
    emit ReadIn({}, false);
}

bool SubtitleFiles::LoadSubtitles(const QString& name) {
    return FormatByName(name.toStdString()) == nullptr && IsFilmName(name.toStdString())
               ? LoadFromFilm(name)
               : LoadSubtitles(name, m_codePage);
}

void SubtitleFiles::ReadAs() {
    const QString name = QString::fromStdString(m_state.document.SubtitleFile);
    const std::optional<FileBytes> bytes = ReadWholeFilePatiently(m_window, PathOf(name));
    if (!bytes)
        return;
    const std::optional<std::string> page =
        frmReadAs(bytes->View(), m_state.document.Style.codePage, m_window).AskPage();
    if (page && SaveIfWished())
        LoadSubtitles(name, *page);
}

bool SubtitleFiles::LoadSubtitles(const QString& name, const std::string& codePage) {
    const std::uint32_t before = m_state.document.Number();
    const LoadResult result = LoadDocument(name, codePage);
    if (!result.message.empty())
        ShowMessage(m_window, MessageText(result.message));
    if (result.offer)
        Offer(*result.offer);
    return m_state.document.Number() != before;
}

bool SubtitleFiles::LoadFromFilm(const QString& film) {
    const QString inQuotes = QStringLiteral("“%1”").arg(QFileInfo(film).fileName());
    if (!SoundAvailable()) {
        ShowMessage(m_window,
                    tr("%1 cannot be looked into: FFmpeg's libraries are missing.").arg(inQuotes));
        return false;
    }
    const FilmTracks tracks(PathOf(film));
    const auto waited = [&](auto ready) {
        frmLoading loading(m_window);
        bool wanted = true;
        while (wanted && !ready()) {
            wanted = loading.Progress(tracks.Done());
            QThread::msleep(LookEvery);
        }
        return wanted;
    };
    if (!waited([&] { return tracks.Now() != FilmTracks::State::Opening; }))
        return false;
    if (tracks.Tracks().empty()) {
        ShowMessage(m_window, tracks.Now() == FilmTracks::State::NoFilm
                                  ? tr("%1 is no film that can be read.").arg(inQuotes)
                                  : tr("%1 holds no subtitles.").arg(inQuotes));
        return false;
    }
    const std::optional<int> line = frmTracks(tracks, film, m_window).Ask();
    if (!line || !waited([&] { return tracks.Now() == FilmTracks::State::Complete; }))
        return false;
    Document& document = m_state.document;
    {
        const Step step(document.Subt, "Open");
        document.BeginOther();
        tracks.Load(static_cast<std::size_t>(*line), m_codePage, document.Subt, document.Style);
    }
    document.SubtitlesChanged = false;
    OpenedWithoutFile();
    return true;
}

void SubtitleFiles::Offer(const MendOffer& offer) {
    std::size_t language = offer.language;
    if (offer.languages.size() > 1) {
        const std::optional<int> line = frmLanguages(offer, m_window).Ask();
        if (!line)
            return;
        language = offer.languages[static_cast<std::size_t>(*line)].number;
    } else if (!AskYesNo(m_window, QString::fromStdString(offer.question), MessageIcon::Question)) {
        return;
    }
    if (offer.languages.size() > 1 && offer.mends.empty() && language == offer.language)
        return;
    Document& document = m_state.document;
    // What the strict reading gave stays as a version.
    const Step step(document.Subt, "Mending", Step::Undo::Emptied);
    TakeOffer(offer, language, document.Subt, document.Style);
    emit Opened();
    document.SubtitlesChanged = true;
    emit Mended(offer.mends.empty() ? tr("another language was chosen")
                                    : QString::fromStdString(MendSummary(offer.mends, true)));
}

LoadResult SubtitleFiles::LoadDocument(const QString& name, const std::string& codePage) {
    Document& document = m_state.document;
    const Step step(document.Subt);
    std::optional<frmLoading> loading;
    LoadHooks hooks;
    hooks.askFrameRate = [this](std::optional<double> named) {
        return AskFrameRate(named);
    };
    hooks.loading = [&] {
        loading.emplace(m_window);
    };
    hooks.progress = [&](double done) {
        return !loading || loading->Progress(done);
    };
    hooks.readFile = [this](const std::filesystem::path& file) {
        return ReadWholeFilePatiently(m_window, file);
    };
    bool replaced = false;
    hooks.replacing = [&] {
        replaced = true;
        document.BeginOther();
    };
    LoadResult result = LoadTitles(PathOf(name), codePage, document.Subt, document.Style, hooks);
    loading.reset();
    if (result.outcome != LoadOutcome::NotOpened)
        emit Opened();
    if (replaced) {
        m_saver.Opened(name);
        document.SubtitlesChanged = false;
        document.Saved();
        emit Mended({});
        emit ReadIn(QString::fromStdString(document.Style.codePage), codePage == GuessedPage);
    }
    return result;
}

bool SubtitleFiles::SaveSubtitles() {
    Document& document = m_state.document;
    m_state.DLG.Filter = QString::fromStdString(FormatFilter());
    const std::optional<SaveResult> result =
        m_saver.Save({.titles = document.Subt,
                      .style = document.Style,
                      .codePage = m_codePage,
                      .name = NameForSaving(document),
                      .askFrameRate = [this] { return AskFrameRate(); },
                      .beforeWriting =
                          [this] {
                              emit FileEmptying();
                          }});
    if (!result)
        return false;
    // What is in no file is unsaved work, whatever it was before.
    document.SubtitlesChanged = !result->proven;
    if (result->proven) {
        document.Saved();
        emit Mended({});
    }
    return result->written;
}

double SubtitleFiles::AskFrameRate(std::optional<double> named) {
    frmFrameRate dialog(m_state.document, {m_state.player->PictureRate(), named.value_or(0)},
                        m_window);
    dialog.exec();
    return m_state.document.FrameRate;
}
