#pragma once

#include "dialogs/fithost.h"

#include <QDialog>

#include <memory>
#include <vector>

class FitGraph;
class FitJob;
class QLabel;
class QProgressBar;
class QPushButton;
class QRadioButton;
class QTreeWidget;
class QTreeWidgetItem;

/// "Fit to ...": finds how the titles fit the sound, or right titles, and proposes it. The
/// titles are changed by "Fit" alone, piece by piece as the person ticks them.
class frmFit : public QDialog {
    Q_OBJECT

  public:
    frmFit(FitHost& host, FitSource source, QWidget* parent);
    ~frmFit() override;

    QLabel* lblVerdict;
    QProgressBar* prgFit;
    FitGraph* picGraph;
    QTreeWidget* lstPieces;
    QRadioButton* optBefore;
    QRadioButton* optAfter;
    QPushButton* cmdListen;
    QPushButton* cmdFit;
    QPushButton* cmdCancel;

    void done(int result) override;

  private:
    void LayOut();
    void Form_Load();
    void PlaceBesideFilm();
    void JobProgressed(const QString& phase, double done);
    void JobFinished();
    void FillPieces();
    void ShowPlaces();
    void lstPieces_ItemChanged();
    void lstPieces_CurrentChanged();
    void optAfter_Toggled();
    void cmdListen_Click();
    void cmdFit_Click();

    const Fit& Result() const;
    std::vector<bool> ChosenPieces() const;
    bool AnyChosen() const;
    std::vector<FitAnchor> TakeAnchors();
    /// The times of all titles with these pieces moved; all when it is empty.
    std::vector<FitTimes> Applied(const std::vector<bool>& chosen) const;

    FitHost& m_host;
    /// As they are, and as the fit gets them.
    std::vector<FitTitle> m_present;
    std::vector<FitTitle> m_titles;
    std::unique_ptr<FitJob> m_job;
    bool m_found = false;
    /// The piece that was listened to: it is shown even if it is not ticked; -1: none.
    int m_heard = -1;
    bool m_filling = false;
    bool m_ended = false;
};
