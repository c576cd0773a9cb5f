#include "mainwindow/frmTracks.h"

#include "mainwindow/handlers.h"
#include "tracks/filmtracks.h"

#include <QFileInfo>
#include <QLocale>

namespace {

constexpr std::chrono::milliseconds CountEvery{100};
constexpr int TitlesColumn = 4;

QString Remarks(const TextTrack& track) {
    QStringList remarks;
    if (!track.name.empty())
        remarks << QString::fromStdString(track.name);
    if (track.isForced)
        remarks << QObject::tr("forced");
    return remarks.join(QStringLiteral(", "));
}

} // namespace

QString LanguageName(const QString& code) {
    const QLocale::Language language = QLocale::codeToLanguage(code);
    if (language == QLocale::AnyLanguage || language == QLocale::C)
        return code;
    return QStringLiteral("%1 (%2)").arg(QLocale::languageToString(language), code);
}

frmTracks::frmTracks(const FilmTracks& tracks, const QString& film, QWidget* parent)
    : ChoiceDialog(parent, "frmTracks", tr("Subtitles in this film"),
                   tr("Which subtitles of “%1” are to be opened? The film itself stays as it is.")
                       .arg(QFileInfo(film).fileName()),
                   {tr("No."), tr("Language"), tr("Name"), tr("Kind"), tr("Titles")})
    , m_tracks(tracks)
    , tmrCount(new QTimer(this)) {
    tmrCount->setObjectName("tmrCount");
    On(tmrCount, &QTimer::timeout, this, &frmTracks::tmrCount_Timer);
    Form_Load();
}

void frmTracks::Form_Load() {
    int number = 0;
    for (const FilmTracks::Track& track : m_tracks.Tracks())
        AddLine({QString::number(++number),
                 LanguageName(QString::fromStdString(track.about.language)),
                 Remarks(track.about),
                 QString::fromStdString(track.kind),
                 {}},
                track.format != nullptr);
    tmrCount_Timer();
    LinesAdded();
    tmrCount->start(CountEvery);
}

void frmTracks::tmrCount_Timer() {
    const bool complete = m_tracks.Now() == FilmTracks::State::Complete;
    if (complete)
        tmrCount->stop();
    int line = 0;
    for (const FilmTracks::Track& track : m_tracks.Tracks()) {
        const QString titles = QString::number(track.titles) + (complete ? "" : " ...");
        SetLine(line++, TitlesColumn, track.format == nullptr ? QString() : titles);
    }
}
