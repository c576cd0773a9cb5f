#pragma once

#include "media/container.h"

#include <optional>

/// Decodes the packets of a sound track and tells when each piece is heard, by the player's
/// own rules: so much is skipped at the start as the container says, a piece without a time
/// stamp follows the one before, and a time stamp that is off by no more than a millisecond is
/// taken for a rounded one.
class SoundDecoder {
  public:
    /// A part of a decoded frame, valid until the next call.
    struct Piece {
        const AVFrame* frame = nullptr;
        int skipped = 0;
        int count = 0;
        /// When it is heard, in seconds on the player's clock.
        double time = 0;
        /// It does not follow the piece before it.
        bool apart = false;
    };

    /// Valid() tells whether the track can be decoded.
    SoundDecoder(const Container& container, int stream);
    bool Valid() const { return m_codec != nullptr; }

    /// Hands in a packet; null at the end of the track. Then all pieces are to be taken.
    void Send(const AVPacket* packet);
    bool Receive(Piece& piece);
    /// After a seek.
    void Reset();

  private:
    void Place(Piece& piece);
    void Trim(Piece& piece);

    const Container& m_container;
    const AVStream& m_stream;
    CodecPointer m_codec;
    FramePointer m_frame;
    /// Samples that are still to be left out at the start, and at the end.
    std::uint32_t m_skip = 0;
    std::uint32_t m_trim = 0;
    /// When the next piece is due: by the decoder's count, and as it was handed out.
    std::optional<double> m_counted;
    std::optional<double> m_next;
};
