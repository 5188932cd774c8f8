#include "LiveStream.h"

#include "Clock.h"
#include "StopToken.h"

#include <algorithm>

namespace navorin::demo {

namespace {

constexpr double burstSeconds = 2;
constexpr int chunkSamples = sampleRate / 5;

} // namespace

LiveStream::LiveStream(const Station &station, RingPosition position, MediaStore &media, const Clock &clock,
                       const StopToken &stop, int metadataInterval)
    : m_station(station)
    , m_media(media)
    , m_clock(clock)
    , m_stop(stop)
    , m_metadataInterval(metadataInterval)
    , m_untilMetadata(metadataInterval)
    , m_pages(0x4C697665)
    , m_start(clock.now())
{
    openSong(position.index);
    m_nextFrame = m_frames->indexAt(static_cast<std::int64_t>(position.elapsed * sampleRate)).value_or(0);
}

void LiveStream::openSong(int index)
{
    m_song = index;
    m_frames =
        m_media.frames(Sound::piece(m_station.songs[static_cast<std::size_t>(index)].piece), m_station.codec);
    m_nextFrame = 0;
}

std::string_view LiveStream::next()
{
    if (!keepPace())
        return {};
    const std::vector<Frame> frames = nextFrames();
    if (frames.empty())
        return {};
    m_chunk.clear();
    if (m_station.codec == Codec::Vorbis) {
        if (!m_begun)
            m_chunk = m_pages.begin(m_frames->headers());
        m_begun = true;
        m_chunk += m_pages.page(frames);
    } else {
        for (const Frame &frame : frames)
            m_chunk += frame.bytes;
        if (m_metadataInterval > 0)
            m_chunk = withMetadata(m_chunk);
    }
    return {m_chunk.constData(), static_cast<std::size_t>(m_chunk.size())};
}

bool LiveStream::keepPace() const
{
    const double due = m_start + static_cast<double>(m_sentSamples) / sampleRate - burstSeconds;
    const double wait = due - m_clock.now();
    return wait <= 0 ? !m_stop.isStopped() : m_stop.sleep(m_clock.real(wait));
}

std::vector<Frame> LiveStream::nextFrames()
{
    std::vector<Frame> frames;
    int samples = 0;
    for (int songsTried = 0; samples < chunkSamples && songsTried < 2;) {
        const auto frame = m_frames->frame(m_nextFrame);
        if (!frame) {
            ++songsTried;
            if (!frames.empty())
                break;
            openSong((m_song + 1) % static_cast<int>(m_station.songs.size()));
            continue;
        }
        ++m_nextFrame;
        samples += frame->samples;
        frames.push_back(*frame);
    }
    m_sentSamples += samples;
    return frames;
}

QByteArray LiveStream::withMetadata(const QByteArray &audio)
{
    QByteArray out;
    for (qsizetype at = 0; at < audio.size();) {
        const qsizetype count = std::min<qsizetype>(m_untilMetadata, audio.size() - at);
        out += audio.mid(at, count);
        at += count;
        m_untilMetadata -= static_cast<int>(count);
        if (m_untilMetadata == 0) {
            out += metadataBlock();
            m_untilMetadata = m_metadataInterval;
        }
    }
    return out;
}

QByteArray LiveStream::metadataBlock()
{
    if (m_announcedSong == m_song)
        return QByteArray(1, '\0');
    m_announcedSong = m_song;
    const Song &song = m_station.songs[static_cast<std::size_t>(m_song)];
    QByteArray text = "StreamTitle='" +
                      QByteArray(song.artist.data(), static_cast<qsizetype>(song.artist.size())) + " - " +
                      QByteArray(song.title.data(), static_cast<qsizetype>(song.title.size())) + "';";
    const qsizetype blocks = (text.size() + 15) / 16;
    text.append(blocks * 16 - text.size(), '\0');
    return QByteArray(1, static_cast<char>(blocks)) + text;
}

} // namespace navorin::demo
