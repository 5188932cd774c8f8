#pragma once

#include "Catalogue.h"
#include "OggPages.h"
#include "Reply.h"

namespace navorin::demo {

class Clock;
class StopToken;

/// One listener's endless stream of a live station: its songs one after the other, at the pace of the
/// server's clock, after a first burst that fills the player's buffer.
class LiveStream : public ByteSource
{
public:
    /// Starts where the station's clock stands, or at the start of that song while it is still being encoded:
    /// a listener should not wait for that. A metadata interval above 0 puts the programme line into the
    /// stream after every so many bytes, as ICY clients ask for it.
    LiveStream(const Station &station, RingPosition position, MediaStore &media, const Clock &clock,
               const StopToken &stop, int metadataInterval);

    std::string_view next() override;

private:
    [[nodiscard]] std::vector<Frame> nextFrames();
    void openSong(int index);
    [[nodiscard]] bool keepPace() const;
    [[nodiscard]] QByteArray withMetadata(const QByteArray &audio);
    [[nodiscard]] QByteArray metadataBlock();

    const Station &m_station;
    MediaStore &m_media;
    const Clock &m_clock;
    const StopToken &m_stop;
    int m_metadataInterval;
    int m_untilMetadata;
    int m_song = 0;
    int m_announcedSong = -1;
    std::shared_ptr<const FrameList> m_frames;
    std::size_t m_nextFrame = 0;
    OggPages m_pages;
    bool m_begun = false;
    std::int64_t m_sentSamples = 0;
    double m_start;
    QByteArray m_chunk;
};

} // namespace navorin::demo
