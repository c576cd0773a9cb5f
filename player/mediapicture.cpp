#include "player/mediapicture.h"

#include "platform/icons.h"

#include <QLabel>
#include <QPainter>

#include <algorithm>

namespace {

constexpr QColor Panel(28, 31, 37);
constexpr QColor Symbol(96, 106, 122);
constexpr int LargestSymbol = 96;
constexpr int NoteMilliseconds = 2000;
constexpr int NoteMargin = 8;
/// Bits of a pixel in every kind of memory that windows are drawn in.
constexpr int Depth = 32;

} // namespace

MediaPicture::MediaPicture(Player& player, QWidget* parent)
    : QWidget(parent)
    , m_player(player)
    , m_note(new QLabel(this)) {
    m_note->setObjectName(QStringLiteral("mpNote"));
    m_note->setMargin(NoteMargin / 2);
    m_note->setAutoFillBackground(true);
    m_note->setBackgroundRole(QPalette::ToolTipBase);
    m_note->setForegroundRole(QPalette::ToolTipText);
    m_note->move(NoteMargin, NoteMargin);
    m_note->hide();
    m_noteTimer.setSingleShot(true);
    m_noteTimer.setInterval(NoteMilliseconds);
    connect(&m_noteTimer, &QTimer::timeout, m_note, &QWidget::hide);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumSize(1, 1);
    // At once: the player takes a picture that is not drawn by then for lost.
    connect(&player, &Player::PictureDue, this, qOverload<>(&QWidget::repaint));
    connect(&player, &Player::ReadyStateChange, this, qOverload<>(&QWidget::update));
}

/// The piece of the window's memory that is this widget, to be drawn on in pixels of
/// the screen; null while the widget is painted onto something else.
QImage MediaPicture::Target() const {
    QPoint offset;
    QPaintDevice* device = redirected(&offset);
    if (device == nullptr || device->devType() != QInternal::Image)
        return {};
    auto& window = *static_cast<QImage*>(device);
    const double ratio = window.devicePixelRatio();
    const QRect place((QPointF(-offset) * ratio).toPoint(), (QSizeF(size()) * ratio).toSize());
    const bool fits = window.depth() == Depth && window.rect().contains(place);
    if (!fits)
        return {};
    uchar* first = window.scanLine(place.top()) + static_cast<qsizetype>(place.left()) * Depth / 8;
    return {first, place.width(), place.height(), window.bytesPerLine(), QImage::Format_RGB32};
}

bool MediaPicture::DrawFilm(QPainter& painter) {
    if (m_player.ReadyState() == 0)
        return false;
    QImage target = Target();
    if (!target.isNull())
        return m_player.DrawPicture(target);
    const double ratio = painter.device()->devicePixelRatioF();
    QImage image((QSizeF(size()) * ratio).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    if (!m_player.DrawPicture(image))
        return false;
    painter.drawImage(0, 0, image);
    return true;
}

void MediaPicture::Title(const QString& text) {
    if (m_title.Text() == text)
        return;
    m_title.Text(text);
    update();
}

void MediaPicture::ShowNote(const QString& text) {
    m_note->setText(text);
    m_note->adjustSize();
    m_note->show();
    m_noteTimer.start();
}

void MediaPicture::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    if (DrawFilm(painter)) {
        m_title.Draw(painter, size());
        m_player.PictureShown();
        return;
    }
    painter.fillRect(rect(), Panel);
    if (m_player.ReadyState() == 0)
        return;
    const int side = std::min({width() / 2, height() / 2, LargestSymbol});
    QRectF place(0, 0, side, side);
    place.moveCenter(QRectF(rect()).center());
    DrawSign(painter, Sign::Note, place, Symbol);
    m_title.Draw(painter, size());
}
