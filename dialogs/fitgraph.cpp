#include "dialogs/fitgraph.h"

#include "dialogs/fitplot.h"
#include "model/numbers.h"

#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace {

constexpr double ThinnestLine = 1.5;
constexpr double ThickestLine = 5;
constexpr int Pale = 70;

QString TimeText(double seconds) {
    const int whole = static_cast<int>(std::lround(seconds));
    return QStringLiteral("%1:%2:%3")
        .arg(whole / 3600)
        .arg(whole / 60 % 60, 2, 10, QLatin1Char('0'))
        .arg(whole % 60, 2, 10, QLatin1Char('0'));
}

QString MoveText(double seconds) {
    const QString number = QString::fromStdString(NumberText(std::round(seconds * 1000) / 1000));
    return (seconds > 0 ? "+" : "") + number + " s";
}

QColor Paled(QColor colour, bool pale) {
    if (pale)
        colour.setAlpha(Pale);
    return colour;
}

/// Places within the frame of the graph, upward positive.
class Canvas {
  public:
    Canvas(const QRectF& frame, const FitPlot& plot)
        : m_frame(frame)
        , m_plot(plot) {}

    QPointF At(double x, double y) const {
        return {m_frame.left() + x * m_frame.width(), m_frame.bottom() - y * m_frame.height()};
    }
    const QRectF& Frame() const { return m_frame; }
    const FitPlot& Plot() const { return m_plot; }

  private:
    QRectF m_frame;
    const FitPlot& m_plot;
};

void DrawAxes(QPainter& painter, const Canvas& canvas, const QPalette& palette) {
    const QFontMetricsF metrics(painter.font());
    const QColor ink = palette.color(QPalette::Text);
    QColor grid = ink;
    grid.setAlpha(40);
    const QRectF& frame = canvas.Frame();
    for (const FitPlot::Tick& tick : canvas.Plot().times) {
        const QPointF foot = canvas.At(tick.at, 0);
        painter.setPen(grid);
        painter.drawLine(foot, canvas.At(tick.at, 1));
        painter.setPen(ink);
        const QString text = TimeText(tick.value);
        const double width = metrics.horizontalAdvance(text);
        painter.drawText(QPointF(foot.x() - width / 2, frame.bottom() + metrics.height()), text);
    }
    for (const FitPlot::Tick& tick : canvas.Plot().moves) {
        const QPointF left = canvas.At(0, tick.at);
        painter.setPen(tick.value == 0 ? QPen(ink, 1) : QPen(grid, 1));
        painter.drawLine(left, canvas.At(1, tick.at));
        painter.setPen(ink);
        const QString text = MoveText(tick.value);
        painter.drawText(QPointF(left.x() - metrics.horizontalAdvance(text) - 6,
                                 left.y() + metrics.ascent() / 2 - 1),
                         text);
    }
}

} // namespace

FitGraph::FitGraph(QWidget* parent)
    : QWidget(parent) {
    setObjectName("picGraph");
    setAccessibleName(tr("How far each title moves"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void FitGraph::Show(Fit fit, std::vector<FitTitle> titles) {
    m_fit = std::move(fit);
    m_titles = std::move(titles);
    update();
}

void FitGraph::Chosen(std::vector<bool> chosen) {
    m_chosen = std::move(chosen);
    update();
}

bool FitGraph::IsChosen(std::int32_t piece) const {
    const auto place = static_cast<std::size_t>(piece);
    return piece >= 0 && (place >= m_chosen.size() || m_chosen[place]);
}

QSize FitGraph::sizeHint() const {
    const int line = fontMetrics().height();
    return {line * 34, line * 13};
}

QSize FitGraph::minimumSizeHint() const {
    const int line = fontMetrics().height();
    return {line * 18, line * 7};
}

void FitGraph::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().base());
    if (m_fit.titles.empty())
        return;
    painter.setRenderHint(QPainter::Antialiasing);
    const QFontMetricsF metrics(font());
    const double left = metrics.horizontalAdvance("-000.00 s") + 10;
    const double below = metrics.height() * 1.5;
    const QRectF frame = QRectF(rect()).adjusted(left, 8, -metrics.height() * 2, -below);
    const int widest =
        std::max(2, static_cast<int>(frame.width() / (metrics.horizontalAdvance("0:00:00") * 1.6)));
    const int highest = std::max(2, static_cast<int>(frame.height() / (metrics.height() * 2)));
    const FitPlot plot(m_fit, m_titles, widest, highest);
    const Canvas canvas(frame, plot);
    DrawAxes(painter, canvas, palette());

    const QColor ink = palette().color(QPalette::Text);
    const QColor line = palette().color(QPalette::Highlight);
    painter.setClipRect(frame.adjusted(-4, -4, 4, 4));
    painter.setPen(Qt::NoPen);
    for (const FitPlot::Dot& dot : plot.dots) {
        QColor colour = ink;
        colour.setAlpha(IsChosen(dot.piece) ? 150 : Pale);
        painter.setBrush(dot.piece < 0 ? Qt::NoBrush : QBrush(colour));
        painter.setPen(dot.piece < 0 ? QPen(colour, 1) : QPen(Qt::NoPen));
        painter.drawEllipse(canvas.At(dot.x, dot.y), 2, 2);
    }
    painter.setBrush(Qt::NoBrush);
    for (const FitPlot::Line& step : plot.steps) {
        painter.setPen(QPen(Paled(line, true), 1, Qt::DashLine));
        painter.drawLine(canvas.At(step.x1, step.y1), canvas.At(step.x2, step.y2));
    }
    for (std::size_t i = 0; i < plot.pieces.size(); ++i) {
        const FitPlot::Line& piece = plot.pieces[i];
        const double width = ThinnestLine + (ThickestLine - ThinnestLine) * piece.confidence;
        painter.setPen(QPen(Paled(line, !IsChosen(static_cast<std::int32_t>(i))), width,
                            Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(canvas.At(piece.x1, piece.y1), canvas.At(piece.x2, piece.y2));
    }
}
