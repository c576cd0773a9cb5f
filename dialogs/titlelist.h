#pragma once

#include "model/session.h"

#include <QFont>
#include <QString>

#include <cstdint>

class QWidget;

/// What the timing dialogs need of the list editor that they work for. Rows are
/// numbered from 1, and row i shows title i.
class TitleList {
  public:
    virtual ~TitleList() = default;

    virtual Session& session() = 0;
    /// The list window itself: dialogs open beside it.
    virtual QWidget* Window() = 0;
    virtual QFont ListFont() const = 0;

    virtual std::int32_t RowCount() const = 0;
    virtual bool RowSelected(std::int32_t row) const = 0;
    /// The current title among the selected ones; 0 when nothing is selected.
    virtual std::int32_t SelectedItem() const = 0;
    /// What stands in the row, which need not be what the list holds.
    virtual QString RowText(std::int32_t row) const = 0;
    virtual QString RowStart(std::int32_t row) const = 0;
    virtual QString RowDuration(std::int32_t row) const = 0;
    virtual void SetRow(std::int32_t row, const QString& text, const QString& start,
                        const QString& duration) = 0;

    /// The titles marked first and second for stretching.
    virtual std::int32_t FirstMarkedTitle() const = 0;
    virtual std::int32_t SecondMarkedTitle() const = 0;

    /// Gives the row the colour of edited rows, unless it is marked.
    virtual void ShowEdited(std::int32_t row) = 0;
    /// Rebuilds all rows from the titles.
    virtual void LoadList() = 0;
};
