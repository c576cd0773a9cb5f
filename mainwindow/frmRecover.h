#pragma once

#include "formats/recoverycopy.h"
#include "platform/recoverystore.h"

#include <QDialog>

#include <cstdint>
#include <optional>
#include <vector>

class QPushButton;
class QTreeWidget;

/// A copy of unsaved work that could be read.
struct RecoverableWork {
    OrphanCopy orphan;
    RecoveredDocument document;
};

/// All that can be recovered, the newest first, what the user once declined included.
std::vector<RecoverableWork> FindRecoverableWork(const QString& folder);

/// One line per piece of work, for a terminal.
QString WorkText(const RecoverableWork& work, std::int64_t now);

/// Shows the unsaved work that was kept and lets the user restore or discard it.
class frmRecover : public QDialog {
    Q_OBJECT

  public:
    /// What becomes of work that is discarded here.
    enum class Discarding {
        /// It is asked for, and then the work is gone.
        IsForGood,
        /// It is kept as work that was declined, for seven days.
        KeepsAWhile,
    };

    explicit frmRecover(std::vector<RecoverableWork>& works,
                        Discarding discarding = Discarding::IsForGood, QWidget* parent = nullptr);

    /// The work to restore, once the dialog was accepted.
    std::optional<std::size_t> Chosen() const { return m_chosen; }

  private:
    void Form_Load();
    void lstWork_Change();
    void cmdRestore_Click();
    void cmdDiscard_Click();
    std::optional<std::size_t> Current() const;

    std::vector<RecoverableWork>& m_works;
    Discarding m_discarding;
    std::optional<std::size_t> m_chosen;
    QTreeWidget* lstWork;
    QPushButton* cmdRestore;
    QPushButton* cmdDiscard;
    QPushButton* cmdClose;
};
