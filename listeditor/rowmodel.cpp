#include "listeditor/rowmodel.h"

#include "base/largeblocks.h"
#include "base/shorttext.h"
#include "model/numbers.h"
#include "model/times.h"
#include "platform/titletext.h"

#include <QColor>

#include <array>
#include <cmath>
#include <utility>

namespace {

/// Rows that an evening may add without the list moving elsewhere in memory.
constexpr std::size_t RoomForMore = 1000;

/// Of a text in its row: no window is wider.
constexpr qsizetype MostShown = 2000;

struct Colours {
    QColor onLight;
    QColor onDark;
};

Colours ColoursOf(RowColour colour) {
    switch (colour) {
    case RowColour::Edited:
        return {QColor(0xBF, 0, 0), QColor(0xFF, 0x8A, 0x80)};
    case RowColour::FirstMark:
        return {QColor(0, 0, 0xFF), QColor(0x82, 0xB1, 0xFF)};
    case RowColour::SecondMark:
        return {QColor(0, 0x7F, 0), QColor(0x7C, 0xD9, 0x82)};
    case RowColour::Plain:
        break;
    }
    return {};
}

/// A start that cannot be shown as text is an error when it is written, not when
/// the row happens to be painted.
void RequireShowable(double start) {
    constexpr double Safe = 32767.0 * 3600;
    if (!(std::abs(start) < Safe))
        FormatTime(start);
}

} // namespace

RowModel::RowModel(QObject* parent)
    : QAbstractTableModel(parent) {}

void RowModel::Load(const SUBTITLES& titles) {
    for (std::int32_t i = 1; i <= titles.Count(); ++i)
        RequireShowable(titles.StartTime(i));
    if (titles.Count() == Count()) {
        Fill(titles, 0);
        ShowAll();
        return;
    }
    beginResetModel();
    Fill(titles, Resize(titles));
    for (Row& row : m_rows)
        row.colour = RowColour::Plain;
    endResetModel();
}

std::int32_t RowModel::Resize(const SUBTITLES& titles) {
    // Room is made or closed where the rows begin to differ, so that most rows
    // keep the memory of their text when a title came or went.
    const auto count = static_cast<std::size_t>(titles.Count());
    if (count > m_rows.capacity()) {
        m_rows.reserve(count + RoomForMore);
        AdviseLargePages(m_rows.data(), m_rows.capacity() * sizeof(Row));
    }
    const std::size_t least = std::min(count, m_rows.size());
    std::size_t same = 0;
    while (same < least && m_rows[same].text == titles.Text(static_cast<std::int32_t>(same) + 1))
        ++same;
    const auto at = m_rows.begin() + static_cast<std::ptrdiff_t>(same);
    if (count > m_rows.size())
        m_rows.insert(at, count - m_rows.size(), Row());
    else
        m_rows.erase(at, at + static_cast<std::ptrdiff_t>(m_rows.size() - count));
    return static_cast<std::int32_t>(same);
}

void RowModel::Fill(const SUBTITLES& titles, std::int32_t equalTexts) {
    for (std::int32_t i = 1; i <= Count(); ++i) {
        Row& row = At(i);
        if (i > equalTexts)
            row.text = titles.Text(i);
        row.start = titles.StartTime(i);
        row.duration = RoundTime(titles.EndTime(i) - titles.StartTime(i));
    }
}

void RowModel::ShowInstead(const SUBTITLES& titles) {
    for (std::int32_t i = 1; i <= titles.Count(); ++i)
        RequireShowable(titles.StartTime(i));
    beginResetModel();
    if (!m_own)
        m_own = std::move(m_rows);
    m_rows.assign(static_cast<std::size_t>(titles.Count()), Row());
    Fill(titles, 0);
    endResetModel();
}

void RowModel::ShowOwn() {
    if (!m_own)
        return;
    beginResetModel();
    m_rows = std::move(*m_own);
    m_own.reset();
    endResetModel();
}

void RowModel::Insert(std::int32_t row, const std::string& text, double start, double duration) {
    if (row < 1 || row > Count() + 1)
        return;
    RequireShowable(start);
    beginInsertRows({}, row - 1, row - 1);
    m_rows.insert(m_rows.begin() + (row - 1), {text, start, duration, RowColour::Plain});
    endInsertRows();
}

void RowModel::Remove(const std::vector<std::int32_t>& rows) {
    if (rows.empty())
        return;
    beginResetModel();
    std::size_t kept = 0;
    auto next = rows.begin();
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        if (next != rows.end() && static_cast<std::size_t>(*next) == i + 1) {
            ++next;
            continue;
        }
        if (kept != i)
            m_rows[kept] = std::move(m_rows[i]);
        ++kept;
    }
    m_rows.resize(kept);
    endResetModel();
}

void RowModel::SetText(std::int32_t row, const std::string& text) {
    if (Holds(row))
        At(row).text = text;
}

void RowModel::SetStart(std::int32_t row, double start) {
    RequireShowable(start);
    if (Holds(row))
        At(row).start = start;
}

void RowModel::SetDuration(std::int32_t row, double duration) {
    if (Holds(row))
        At(row).duration = duration;
}

void RowModel::SetColour(std::int32_t row, RowColour colour) {
    if (Holds(row))
        At(row).colour = colour;
}

void RowModel::Show(std::int32_t first, std::int32_t last) {
    if (Holds(first) && Holds(last))
        emit dataChanged(index(first - 1, 0), index(last - 1, Columns - 1));
}

void RowModel::Playing(std::int32_t row) {
    const std::int32_t before = std::exchange(m_playing, row);
    if (before == row)
        return;
    Show(before, before);
    Show(row, row);
}

QString RowModel::CellText(std::int32_t row, Column column) const {
    if (!Holds(row))
        return {};
    switch (column) {
    case Text:
        return TitleToQt(At(row).text);
    case Start:
        return QString::fromStdString(FormatTime(At(row).start));
    case Duration:
        return QString::fromStdString(NumberText(At(row).duration));
    case Columns:
        break;
    }
    return {};
}

int RowModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : Count();
}

int RowModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : Columns;
}

QVariant RowModel::Colour(std::int32_t row) const {
    if (At(row).colour == RowColour::Plain)
        return {};
    const Colours colours = ColoursOf(At(row).colour);
    return m_dark ? colours.onDark : colours.onLight;
}

QString RowModel::ToolTip(std::int32_t row) const {
    switch (MarkOf ? MarkOf(row) : 0) {
    case 1:
        return tr("Marked as first for stretch timing");
    case 2:
        return tr("Marked as second for stretch timing");
    default:
        return {};
    }
}

QString RowModel::SpokenText(std::int32_t row) const {
    QString text = QString::fromStdString(ShortText(At(row).text)).simplified();
    const int mark = MarkOf ? MarkOf(row) : 0;
    if (mark != 0)
        text += mark == 1 ? tr(", first mark") : tr(", second mark");
    if (At(row).colour == RowColour::Edited)
        text += tr(", edited");
    return text;
}

QVariant RowModel::data(const QModelIndex& index, int role) const {
    const std::int32_t row = index.row() + 1;
    if (!index.isValid() || !Holds(row))
        return {};
    switch (role) {
    case Qt::DisplayRole:
        if (index.column() == Text)
            return TitleToQt(ShortText(At(row).text)).left(MostShown);
        [[fallthrough]];
    case Qt::EditRole:
        return CellText(row, static_cast<Column>(index.column()));
    case Qt::ForegroundRole:
        return Colour(row);
    case Qt::ToolTipRole:
    case Qt::AccessibleDescriptionRole:
        return ToolTip(row);
    case Qt::AccessibleTextRole:
        return index.column() == Text ? SpokenText(row) : QVariant();
    case PlayingRole:
        return row == m_playing;
    case MarkRole:
        return MarkOf ? MarkOf(row) : 0;
    case Qt::TextAlignmentRole:
        return int(index.column() == Text ? Qt::AlignLeft | Qt::AlignVCenter
                                          : Qt::AlignRight | Qt::AlignVCenter);
    default:
        return {};
    }
}

bool RowModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::EditRole || index.column() != Text || !Holds(index.row() + 1))
        return false;
    emit LabelEdited(index.row() + 1, value.toString());
    return true;
}

QVariant RowModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= Columns)
        return {};
    constexpr std::array<const char*, Columns> Captions{"Text", "Start", "Duration"};
    if (role == Qt::DisplayRole)
        return QString::fromLatin1(Captions[static_cast<std::size_t>(section)]);
    if (role == Qt::TextAlignmentRole)
        return int(section == Text ? Qt::AlignLeft | Qt::AlignVCenter
                                   : Qt::AlignRight | Qt::AlignVCenter);
    return {};
}

Qt::ItemFlags RowModel::flags(const QModelIndex& index) const {
    if (!index.isValid())
        return {};
    const Qt::ItemFlags row = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    return index.column() == Text ? row | Qt::ItemIsEditable : row;
}
