#include "mainwindow/recovery.h"

#include "mainwindow/frmQuelmar.h"
#include "platform/errorgate.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDeadlineTimer>
#include <QEventLoop>

#include <algorithm>
#include <chrono>
#include <memory>
#include <utility>

namespace {

// Changes are on the disk within 300 ms: the pause between two copies, and the writing.
constexpr auto ShortestWait = std::chrono::milliseconds(20);
constexpr auto ShortestPause = std::chrono::milliseconds(150);
constexpr qint64 RestFactor = 4;

std::int64_t Now() {
    return QDateTime::currentSecsSinceEpoch();
}

/// How long a save waits for the copy, and how long at a time.
constexpr auto LongestPause = std::chrono::milliseconds(250);
constexpr auto Unfelt = std::chrono::milliseconds(20);

} // namespace

Recovery::Recovery(frmQuelmar& window, RecoveryStore& store)
    : m_window(window)
    , m_store(store)
    , m_connection(window.document().Subscribe(
          [this](const Change& change) { Guarded([&] { Document_Change(change); }); }))
    , m_beforeOther(window.document().BeforeOther([this] { DocumentReplacing(); }))
    , m_whileTyping(window.document().WhileTyping([this] {
        m_typing = true;
        KeepSoon();
    }))
    , m_pause(ShortestPause) {
    connect(&window, &frmQuelmar::SaveDeclined, this, &Recovery::SaveDeclined);
    connect(&window, &frmQuelmar::FileEmptying, this, &Recovery::FileEmptying);
    connect(&m_soon, &QTimer::timeout, this, [this] { Guarded([this] { KeepChanges(); }); });
    // Told on the store's thread.
    m_store.WhenInTrouble([this](const QString& trouble) {
        QMetaObject::invokeMethod(this, [this, trouble] { StoreInTrouble(trouble); });
    });
    m_soon.setSingleShot(true);
    m_soon.setTimerType(Qt::PreciseTimer);
    m_sinceCopy.start();
    DocumentHeld();
}

Recovery::~Recovery() {
    m_store.WhenInTrouble(nullptr);
    KeepChanges();
}

void Recovery::Document_Change(const Change& change) {
    if (change.kind == Change::Kind::Saved)
        return DocumentHeld();
    if (change.kind != Change::Kind::Marks)
        KeepSoon();
}

void Recovery::KeepSoon() {
    if (m_soon.isActive())
        return;
    const std::chrono::milliseconds past(m_sinceCopy.elapsed());
    m_soon.start(std::max(ShortestWait, m_pause - past));
}

void Recovery::StoreInTrouble(const QString& trouble) {
    m_window.ShowTrouble(trouble.isEmpty() ? QString()
                                           : tr("Unsaved work cannot be kept: %1").arg(trouble));
}

void Recovery::KeepChanges() {
    if (m_replacing || (!m_typing && m_window.Subt.Changes() == m_keptChanges))
        return;
    m_declined = false;
    Keep(Fate::Current);
}

// Only the laying out of the document costs the window time: comparing, sealing and
// writing are the store's. Of a list so long that it is felt all the same, copies are
// made less often.
void Recovery::Keep(Fate fate) {
    QElapsedTimer layingOut;
    layingOut.start();
    m_keptChanges = m_window.Subt.Changes();
    m_typing = false;
    const auto body = std::make_shared<const RecoveryBody>(m_window.Subt, m_window.Notes(),
                                                           m_window.document().Earlier());
    const RecoveryStamp stamp{Now(), m_declined};
    m_pause = std::max(ShortestPause, std::chrono::milliseconds(layingOut.elapsed() * RestFactor));
    m_sinceCopy.start();
    auto maker = [body, stamp, fate, offers = m_offers,
                  held = m_heldTitles]() -> std::optional<std::string> {
        const bool kept = !held || body->HasDraft() || body->TitlesFingerprint() != *held;
        const bool offered = kept && !stamp.declined;
        if (fate == Fate::Current)
            offers->current = offered;
        else if (offered)
            offers->archived = true;
        return kept ? std::optional(SealRecoveryCopy(*body, stamp)) : std::nullopt;
    };
    if (fate == Fate::Current)
        return m_store.Post(std::move(maker));
    m_store.Archive(std::move(maker));
    ForgetCurrent();
}

void Recovery::ForgetCurrent() {
    m_store.Post([offers = m_offers]() -> std::optional<std::string> {
        offers->current = false;
        return std::nullopt;
    });
}

// The file stays whole without the copy too, so a window that saves does not stand still for it.
void Recovery::FileEmptying() {
    KeepChanges();
    const QDeadlineTimer patience(LongestPause);
    while (!m_store.Flush(Unfelt) && !patience.hasExpired())
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

bool Recovery::Flush() {
    KeepChanges();
    m_store.Flush();
    return m_store.HasCopy() && (m_offers->current || m_offers->archived);
}

// Until the next document stands, what is in the list is half of it.
void Recovery::DocumentReplacing() {
    if (!m_heldTitles || m_window.Subt.Changes() != m_heldChanges)
        Keep(Fate::Archived);
    m_replacing = true;
}

void Recovery::DocumentHeld() {
    m_replacing = false;
    m_declined = false;
    m_heldTitles = RecoveryBody(m_window.Subt, m_window.Notes()).TitlesFingerprint();
    m_heldChanges = m_keptChanges = m_window.Subt.Changes();
    ForgetCurrent();
    m_typing = m_window.document().Typed().has_value();
    if (m_typing)
        KeepSoon();
}

void Recovery::SaveDeclined() {
    m_declined = true;
    Keep(Fate::Current);
}
