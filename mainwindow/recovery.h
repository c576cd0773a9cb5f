#pragma once

#include "formats/recoverycopy.h"
#include "model/document.h"
#include "platform/recoverystore.h"

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

class frmQuelmar;
struct RecoverableWork;

/// Keeps a recovery copy of the document while its titles differ from what its file
/// holds, whatever the window's own mark of changes says, and brings work of earlier
/// runs back.
class Recovery : public QObject {
    Q_OBJECT

  public:
    Recovery(frmQuelmar& window, RecoveryStore& store);
    ~Recovery() override;

    /// Offers the work of runs that did not end normally. true: some was restored.
    bool OfferOrphans();
    /// Puts the work into the window and takes the copy over.
    void Restore(OrphanCopy& orphan, RecoveredDocument document);
    /// Waits until the copy is on the disk. true: there is something to offer at the next start.
    bool Flush();

  private:
    /// What is to become of the document's copy.
    enum class Fate { Current, Archived };

    void Document_Change(const Change& change);
    void KeepSoon();
    /// What is to be offered now; what cannot be read is told.
    std::vector<RecoverableWork> TakeOffers();
    bool OfferOne(RecoverableWork& work);
    void KeepChanges();
    void FileEmptying();
    void StoreInTrouble(const QString& trouble);
    void Keep(Fate fate);
    void ForgetCurrent();
    void DocumentReplacing();
    void DocumentHeld();
    void SaveDeclined();

    frmQuelmar& m_window;
    RecoveryStore& m_store;
    Connection m_connection;
    Connection m_beforeOther;
    Connection m_whileTyping;
    QTimer m_soon;
    /// Since the last copy, and how long the next one waits for at least.
    QElapsedTimer m_sinceCopy;
    std::chrono::milliseconds m_pause;
    /// Of the titles that the file holds; nothing after a restoring.
    std::optional<std::uint64_t> m_heldTitles;
    std::uint64_t m_heldChanges = 0;
    std::uint64_t m_keptChanges = 0;
    /// Of the document at hand, and of those before it: is there a copy that will be
    /// offered? Set where copies are made.
    struct Offers {
        std::atomic<bool> current = false;
        std::atomic<bool> archived = false;
    };
    std::shared_ptr<Offers> m_offers = std::make_shared<Offers>();
    /// Something else than the titles is to be kept.
    bool m_typing = false;
    bool m_replacing = false;
    bool m_declined = false;
};

/// Work found at the start, as one question about it.
struct RecoveryQuestion {
    QString text;
    QString details;

    RecoveryQuestion(const RecoveredDocument& document, std::int64_t now);
};

/// The name of a document for people: the subtitle file's, without its folder.
QString DocumentName(const RecoveryNotes& notes);
/// What is wrong with the copy, for people; empty for a whole one.
QString DamageText(const RecoveredDocument& document);
/// The user does not want the work: it is kept a while, but not offered.
void Decline(OrphanCopy& orphan);

/// Copies that were declined or cannot be read are kept that long.
inline constexpr std::int64_t KeepDeclinedSeconds = std::int64_t{7} * 24 * 60 * 60;
