#pragma once

#include "model/document.h"

#include <QFont>
#include <QString>

#include <cstdint>
#include <span>
#include <vector>

class QWidget;

/// What the timing dialogs and the find dialog need of the list editor that they
/// work for. Rows are numbered from 1, and row i shows title i.
class TitleList {
  public:
    virtual ~TitleList() = default;

    virtual Document& document() = 0;
    /// The list window itself: dialogs open beside it.
    virtual QWidget* Window() = 0;
    virtual QFont ListFont() const = 0;

    virtual std::int32_t RowCount() const = 0;
    /// In ascending order.
    virtual std::vector<std::int32_t> SelectedRows() const = 0;
    /// The current title among the selected ones; 0 when nothing is selected.
    virtual std::int32_t SelectedItem() const = 0;
    /// Deselects that one.
    virtual void UnselectItem() = 0;
    virtual void SelectAll() = 0;
    /// What stands in the row, which need not be what the list holds. Empty
    /// where there is no such row.
    virtual QString RowText(std::int32_t row) const = 0;
    virtual QString RowStart(std::int32_t row) const = 0;
    virtual QString RowDuration(std::int32_t row) const = 0;
    virtual void SetRow(std::int32_t row, const QString& text, double start, double duration) = 0;

    /// The titles marked first and second for stretching.
    virtual std::int32_t FirstMarkedTitle() const = 0;
    virtual std::int32_t SecondMarkedTitle() const = 0;

    /// Gives the row the colour of edited rows, unless it is marked; a number
    /// below 0 means the current title.
    virtual void ShowEdited(std::int32_t row) = 0;
    virtual void ShowAllEdited(std::span<const std::int32_t> rows) = 0;
    /// Rebuilds all rows from the titles.
    virtual void LoadList() = 0;
    /// Shows other titles in plain rows until `ShowOwn`, which brings the rows, their
    /// colours and the selection back.
    virtual void ShowInstead(const SUBTITLES& titles) = 0;
    virtual void ShowOwn() = 0;
    /// Selects the title, scrolls to it and moves the player to its start.
    virtual void GoToTitle(std::int32_t index) = 0;
};
