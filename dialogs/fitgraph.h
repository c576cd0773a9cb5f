#pragma once

#include "fit/fit.h"

#include <QWidget>

#include <vector>

/// Draws how far each title moves over the length of the film: each title is a dot at its
/// own best place, each piece a line, the thicker the surer, each cut a step.
class FitGraph : public QWidget {
    Q_OBJECT

  public:
    explicit FitGraph(QWidget* parent);

    void Show(Fit fit, std::vector<FitTitle> titles);
    /// Which pieces are taken; the others are drawn pale.
    void Chosen(std::vector<bool> chosen);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    bool IsChosen(std::int32_t piece) const;

    Fit m_fit;
    std::vector<FitTitle> m_titles;
    std::vector<bool> m_chosen;
};
