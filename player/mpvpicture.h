#pragma once

#include "player/mpvlibrary.h"

#include <QImage>

#include <functional>
#include <memory>

/// Draws libmpv's pictures by software into images, on the thread that made it.
class MpvPicture {
  public:
    /// Null when libmpv refuses. `due` is called on a thread of libmpv's whenever
    /// there may be something new to draw.
    static std::unique_ptr<MpvPicture> Make(const MpvLibrary& mpv, mpv_handle* player,
                                            std::function<void()> due);
    ~MpvPicture();
    MpvPicture(const MpvPicture&) = delete;
    MpvPicture& operator=(const MpvPicture&) = delete;

    /// Whether a picture is due that was not there at the last call.
    bool New();
    /// Fills the image (Format_RGB32), with black bars where the shapes differ, with the
    /// picture turned clockwise by whole quarters (in degrees).
    bool Draw(QImage& image, int rotation);
    /// Tells libmpv to go on without having this picture drawn.
    void Skip();
    void Shown();

  private:
    bool DrawLevel(QImage& image);
    MpvPicture(const MpvLibrary& mpv, std::function<void()> due);

    const MpvLibrary& m_mpv;
    const std::function<void()> m_due;
    mpv_render_context* m_context = nullptr;
};
