#include "mainwindow/loosetitle.h"

#include "model/numbers.h"
#include "model/times.h"
#include "platform/titletext.h"

#include <QWidget>

QFont LooseTitle::ListFont() const {
    return m_window->font();
}

QString LooseTitle::RowText(std::int32_t row) const {
    return TitleToQt(m_document.Subt.Text(row));
}

QString LooseTitle::RowStart(std::int32_t row) const {
    return QString::fromStdString(FormatTime(m_document.Subt.StartTime(row)));
}

QString LooseTitle::RowDuration(std::int32_t row) const {
    const SUBTITLES& titles = m_document.Subt;
    return QString::fromStdString(
        NumberText(RoundTime(titles.EndTime(row) - titles.StartTime(row))));
}
