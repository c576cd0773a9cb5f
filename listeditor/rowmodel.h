#pragma once

#include "model/subtitles.h"

#include <QAbstractTableModel>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

enum class RowColour : std::uint8_t { Plain, Edited, FirstMark, SecondMark };

/// The rows of the list editor. A row keeps what was last written into it, not
/// what the title is now; times are kept as numbers and become text when they are
/// shown. Rows are numbered from 1; those that do not exist are ignored.
class RowModel : public QAbstractTableModel {
    Q_OBJECT

  public:
    enum Column { Text, Start, Duration, Columns };
    /// The text with its mark in words, for people; nothing in an unmarked row.
    static constexpr int MarkRole = Qt::UserRole;
    /// true for the row of the title that the film has come to.
    static constexpr int PlayingRole = Qt::UserRole + 1;

    explicit RowModel(QObject* parent = nullptr);

    /// Which mark a row bears, if any: 1, 2 or 0.
    std::function<int(std::int32_t)> MarkOf;

    std::int32_t Count() const { return static_cast<std::int32_t>(m_rows.size()); }
    /// A row per title. The colours stay while the number of rows stays; otherwise
    /// all rows become plain.
    void Load(const SUBTITLES& titles);
    /// Plain rows of other titles, until `ShowOwn` brings the rows and colours back.
    /// Nothing may be written meanwhile.
    void ShowInstead(const SUBTITLES& titles);
    void ShowOwn();
    void Insert(std::int32_t row, const std::string& text, double start, double duration);
    /// In one pass; the rows ascend.
    void Remove(const std::vector<std::int32_t>& rows);

    // What follows shows only after `Show`.
    void SetText(std::int32_t row, const std::string& text);
    void SetStart(std::int32_t row, double start);
    void SetDuration(std::int32_t row, double duration);
    void SetColour(std::int32_t row, RowColour colour);
    void Show(std::int32_t first, std::int32_t last);
    void ShowAll() { Show(1, Count()); }

    /// The film has come to that row; shows at once. A row that does not exist: to none.
    void Playing(std::int32_t row);

    /// Colours that can be read on a dark ground.
    void SetDark(bool dark) { m_dark = dark; }

    QString CellText(std::int32_t row, Column column) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

  signals:
    /// The text of a row was edited in place; the row itself is still as it was.
    void LabelEdited(std::int32_t row, const QString& text);

  private:
    struct Row {
        std::string text;
        double start = 0;
        double duration = 0;
        RowColour colour = RowColour::Plain;
    };

    bool Holds(std::int32_t row) const { return row >= 1 && row <= Count(); }
    Row& At(std::int32_t row) { return m_rows[static_cast<std::size_t>(row - 1)]; }
    const Row& At(std::int32_t row) const { return m_rows[static_cast<std::size_t>(row - 1)]; }
    /// As many rows as titles; how many of the first ones have the titles' texts already.
    std::int32_t Resize(const SUBTITLES& titles);
    void Fill(const SUBTITLES& titles, std::int32_t equalTexts);
    QVariant Colour(std::int32_t row) const;
    QString ToolTip(std::int32_t row) const;
    /// The row's text, then its mark and whether it was edited, in words.
    QString SpokenText(std::int32_t row) const;

    std::vector<Row> m_rows;
    std::optional<std::vector<Row>> m_own;
    std::int32_t m_playing = 0;
    bool m_dark = false;
};
