#include "player/titlepicture.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <QTextLayout>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

// Shares of the picture's height.
constexpr double LetterHeight = 0.06;
constexpr double Margin = 0.05;
constexpr double TallestTitle = 0.7;
constexpr int SmallestLetter = 13;
/// Share of the picture's width that a line may take.
constexpr double LineWidth = 0.92;
/// Of the letters' height, on either side of their edges.
constexpr double Outline = 0.07;

/// A title's text without its tags, and what they say.
struct Styled {
    QString text;
    QList<QTextLayout::FormatRange> formats;
};

Styled WithoutTags(QString title) {
    title.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    Styled styled;
    bool italic = false;
    bool bold = false;
    struct Tag {
        QLatin1String text;
        bool& style;
        bool on;
    };
    const std::array<Tag, 4> tags{{{QLatin1String("<i>"), italic, true},
                                   {QLatin1String("</i>"), italic, false},
                                   {QLatin1String("<b>"), bold, true},
                                   {QLatin1String("</b>"), bold, false}}};
    qsizetype begin = 0;
    const auto endRun = [&] {
        if (begin == styled.text.size())
            return;
        QTextCharFormat format;
        format.setFontItalic(italic);
        format.setFontWeight(bold ? QFont::Bold : QFont::Normal);
        styled.formats.append(
            {static_cast<int>(begin), static_cast<int>(styled.text.size() - begin), format});
        begin = styled.text.size();
    };
    for (qsizetype at = 0; at < title.size();) {
        const auto rest = QStringView(title).mid(at);
        const auto* tag = std::find_if(tags.begin(), tags.end(), [&](const Tag& candidate) {
            return rest.startsWith(candidate.text, Qt::CaseInsensitive);
        });
        if (tag != tags.end()) {
            endRun();
            tag->style = tag->on;
            at += tag->text.size();
            continue;
        }
        const QChar letter = title[at++];
        const bool breaks = letter == QLatin1Char('\n') || letter == QLatin1Char('\r');
        styled.text += breaks ? QChar(QChar::LineSeparator) : letter;
    }
    endRun();
    return styled;
}

/// Lays the lines out one below the other; answers the height of all.
double LayOut(QTextLayout& layout, const Styled& styled, int letterHeight, double width) {
    QFont font = QGuiApplication::font();
    font.setPixelSize(letterHeight);
    layout.setFont(font);
    layout.setText(styled.text);
    layout.setFormats(styled.formats);
    QTextOption option(Qt::AlignHCenter);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    double height = 0;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        line.setPosition({0, height});
        height += line.height();
    }
    layout.endLayout();
    return height;
}

Styled Coloured(Styled styled, const QPen& outline, const QColor& colour) {
    for (QTextLayout::FormatRange& range : styled.formats) {
        range.format.setForeground(colour);
        range.format.setTextOutline(outline);
    }
    return styled;
}

} // namespace

void TitlePicture::Text(const QString& text) {
    if (m_text == text)
        return;
    m_text = text;
    m_image = {};
}

void TitlePicture::Draw(QPainter& painter, QSize area) {
    if (m_text.isEmpty() || area.isEmpty())
        return;
    const qreal scale = painter.device()->devicePixelRatioF();
    if (m_image.isNull() || m_area != area || m_image.devicePixelRatio() != scale)
        Make(area, scale);
    painter.drawImage(m_place, m_image);
}

void TitlePicture::Make(QSize area, qreal scale) {
    m_area = area;
    const Styled styled = WithoutTags(m_text);
    const double width = area.width() * LineWidth;
    int letterHeight = std::max(SmallestLetter, static_cast<int>(area.height() * LetterHeight));
    QTextLayout layout;
    double height = LayOut(layout, styled, letterHeight, width);
    while (height > area.height() * TallestTitle && letterHeight > SmallestLetter) {
        letterHeight = std::max(SmallestLetter, letterHeight * 4 / 5);
        height = LayOut(layout, styled, letterHeight, width);
    }
    const double outline = std::max(1.0, letterHeight * Outline);
    const double room = std::ceil(outline) + 1;
    const QRectF text = layout.boundingRect();
    const double left = std::floor(text.left() - room);
    const QSize size(static_cast<int>(std::ceil(width - left + room)),
                     static_cast<int>(std::ceil(height + 2 * room)));
    m_image = QImage((QSizeF(size) * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    m_image.setDevicePixelRatio(scale);
    m_image.fill(Qt::transparent);
    const QPointF origin(-left, room);
    QPainter painter(&m_image);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPen edge(Qt::black, 2 * outline, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    for (const Styled& pass :
         {Coloured(styled, edge, Qt::black), Coloured(styled, QPen(Qt::NoPen), Qt::white)}) {
        QTextLayout drawn;
        LayOut(drawn, pass, letterHeight, width);
        drawn.draw(&painter, origin);
    }
    m_place = QPointF(area.width() * (1 - LineWidth) / 2 + left,
                      std::floor(area.height() * (1 - Margin) - height - room));
}
