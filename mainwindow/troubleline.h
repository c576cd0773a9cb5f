#pragma once

#include <QLabel>

/// A line over the top of a window for what the user must know while it lasts. It is not
/// there when there is nothing to say.
class TroubleLine : public QLabel {
  public:
    explicit TroubleLine(QWidget* window);

    void Say(const QString& trouble);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void FitWindow();
};
