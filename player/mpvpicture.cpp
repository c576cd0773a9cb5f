#include "player/mpvpicture.h"

#include <QPainter>
#include <QTransform>

#include <cstddef>
#include <span>
#include <utility>

namespace {

/// The parameters' fields are pointers to mutable data, which libmpv only reads.
template <typename T>
void* Data(const T* value) {
    return const_cast<void*>(static_cast<const void*>(value));
}

/// libmpv draws opaque pictures but leaves the bars beside them transparent, which
/// Wayland would show through the window.
void MakeBarsOpaque(QImage& image) {
    constexpr QRgb Opaque = 0xff000000;
    const auto fill = [](auto pixel, auto end) {
        for (; pixel != end && qAlpha(*pixel) == 0; ++pixel)
            *pixel |= Opaque;
    };
    for (int y = 0; y < image.height(); ++y) {
        const std::span row(reinterpret_cast<QRgb*>(image.scanLine(y)),
                            static_cast<std::size_t>(image.width()));
        fill(row.begin(), row.end());
        fill(row.rbegin(), row.rend());
    }
}

} // namespace

std::unique_ptr<MpvPicture> MpvPicture::Make(const MpvLibrary& mpv, mpv_handle* player,
                                             std::function<void()> due) {
    std::unique_ptr<MpvPicture> picture(new MpvPicture(mpv, std::move(due)));
    mpv_render_param parameters[] = {{MPV_RENDER_PARAM_API_TYPE, Data(MPV_RENDER_API_TYPE_SW)},
                                     {MPV_RENDER_PARAM_INVALID, nullptr}};
    if (mpv.render_context_create(&picture->m_context, player, parameters) < 0)
        return nullptr;
    mpv.render_context_set_update_callback(
        picture->m_context, [](void* self) { static_cast<MpvPicture*>(self)->m_due(); },
        picture.get());
    return picture;
}

MpvPicture::MpvPicture(const MpvLibrary& mpv, std::function<void()> due)
    : m_mpv(mpv)
    , m_due(std::move(due)) {}

MpvPicture::~MpvPicture() {
    if (m_context != nullptr)
        m_mpv.render_context_free(m_context);
}

bool MpvPicture::New() {
    return (m_mpv.render_context_update(m_context) & MPV_RENDER_UPDATE_FRAME) != 0;
}

bool MpvPicture::Draw(QImage& image, int rotation) {
    if (image.isNull() || image.format() != QImage::Format_RGB32)
        return false;
    if (rotation == 0)
        return DrawLevel(image);
    const bool sideways = rotation % 180 != 0;
    QImage level(sideways ? image.size().transposed() : image.size(), image.format());
    if (!DrawLevel(level))
        return false;
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawImage(0, 0, level.transformed(QTransform().rotate(rotation)));
    return true;
}

bool MpvPicture::DrawLevel(QImage& image) {
    const int size[] = {image.width(), image.height()};
    const auto stride = static_cast<std::size_t>(image.bytesPerLine());
    const int wait = 0;
    mpv_render_param parameters[] = {{MPV_RENDER_PARAM_SW_SIZE, Data(size)},
                                     {MPV_RENDER_PARAM_SW_FORMAT, Data("bgra")},
                                     {MPV_RENDER_PARAM_SW_STRIDE, Data(&stride)},
                                     {MPV_RENDER_PARAM_SW_POINTER, image.bits()},
                                     {MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, Data(&wait)},
                                     {MPV_RENDER_PARAM_INVALID, nullptr}};
    if (m_mpv.render_context_render(m_context, parameters) < 0)
        return false;
    MakeBarsOpaque(image);
    return true;
}

void MpvPicture::Skip() {
    const int skip = 1;
    const int wait = 0;
    mpv_render_param parameters[] = {{MPV_RENDER_PARAM_SKIP_RENDERING, Data(&skip)},
                                     {MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, Data(&wait)},
                                     {MPV_RENDER_PARAM_INVALID, nullptr}};
    m_mpv.render_context_render(m_context, parameters);
}

void MpvPicture::Shown() {
    m_mpv.render_context_report_swap(m_context);
}
