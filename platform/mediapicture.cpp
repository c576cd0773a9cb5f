#include "platform/mediapicture.h"

#include "platform/mediaicons.h"

#include <QPainter>

#include <algorithm>

namespace {

constexpr QColor Panel(28, 31, 37);
constexpr QColor Symbol(96, 106, 122);
constexpr int LargestSymbol = 96;

} // namespace

MediaPicture::MediaPicture(Player& player, QWidget* parent)
    : QWidget(parent)
    , m_player(player) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumSize(1, 1);
    connect(&player, &Player::PictureDue, this, &MediaPicture::Draw);
    connect(&player, &Player::ReadyStateChange, this, &MediaPicture::Draw);
}

void MediaPicture::Draw() {
    if (!isVisible())
        return;
    const double ratio = devicePixelRatioF();
    const QSize size = (QSizeF(this->size()) * ratio).toSize();
    if (m_image.size() != size)
        m_image = QImage(size, QImage::Format_RGB32);
    m_image.setDevicePixelRatio(ratio);
    m_drawn = m_player.ReadyState() != 0 && m_player.DrawPicture(m_image);
    update();
}

void MediaPicture::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    if (m_drawn) {
        painter.drawImage(0, 0, m_image);
        m_player.PictureShown();
        return;
    }
    painter.fillRect(rect(), Panel);
    if (m_player.ReadyState() == 0)
        return;
    const int side = std::min({width() / 2, height() / 2, LargestSymbol});
    QRectF place(0, 0, side, side);
    place.moveCenter(QRectF(rect()).center());
    DrawMediaShape(painter, MediaShape::Note, place, Symbol);
}

void MediaPicture::resizeEvent(QResizeEvent* /*event*/) {
    Draw();
}

void MediaPicture::showEvent(QShowEvent* /*event*/) {
    Draw();
}
