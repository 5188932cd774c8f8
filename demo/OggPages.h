#pragma once

#include "FrameList.h"

namespace navorin::demo {

/// Puts Vorbis packets into Ogg pages (RFC 3533), counting samples itself: so frames of different pieces, or
/// of one piece over and over, make one unbroken stream. All must come from the same encoder settings.
class OggPages
{
public:
    explicit OggPages(std::uint32_t serial)
        : m_serial(serial)
    {
    }

    /// The pages that begin the stream.
    [[nodiscard]] QByteArray begin(const std::vector<QByteArray> &headers);
    /// One page with these frames, at most 255 lacing values of them.
    [[nodiscard]] QByteArray page(const std::vector<Frame> &frames, bool last = false);

private:
    [[nodiscard]] QByteArray makePage(const std::vector<QByteArray> &packets, std::uint8_t flags,
                                      std::int64_t position);

    std::uint32_t m_serial;
    std::uint32_t m_sequence = 0;
    std::int64_t m_position = 0;
    bool m_primed = false;
};

/// A whole file.
[[nodiscard]] QByteArray oggFile(const std::vector<QByteArray> &headers, const std::vector<Frame> &frames);

/// The block sizes, short and long, that a Vorbis identification header states.
struct VorbisBlocks
{
    int shortBlock = 256;
    int longBlock = 2048;
};
[[nodiscard]] VorbisBlocks vorbisBlocks(const QByteArray &identification);

} // namespace navorin::demo
