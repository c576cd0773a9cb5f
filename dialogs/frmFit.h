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
    std::vector<FitTimes> Times() const;
    bool AnyChosen() const;

    FitHost& m_host;
    std::vector<FitTitle> m_titles;
    std::unique_ptr<FitJob> m_job;
    bool m_found = false;
    bool m_filling = false;
    bool m_ended = false;
};
