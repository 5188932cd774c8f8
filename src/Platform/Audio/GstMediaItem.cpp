#include "Platform/Audio/GstMediaItem.h"

#include "Platform/Audio/AudioTapHost.h"
#include "Platform/Audio/GstItemPipeline.h"

#include <limits>
#include <stdexcept>
#include <utility>

namespace navorin {
namespace {

constexpr double unknown = std::numeric_limits<double>::quiet_NaN();

} // namespace

/// Carries what the pipeline tells into the item, on the UI thread.
struct GstMediaItem::Handler
{
    GstMediaItem &item;

    void operator()(const GstItemPipeline::TracksKnown &known) const
    {
        if (std::exchange(item.m_tracksSettled, true))
            return;
        QList<AudioTrack> tracks;
        for (qint32 id = 1; id <= known.count; ++id)
            tracks.append(AudioTrack{id});
        item.m_tracks.addResult(tracks);
        item.m_tracks.finish();
    }
    void operator()(GstItemPipeline::Prerolled) const { item.m_status = Status::ReadyToPlay; }
    void operator()(GstItemPipeline::Sounding sounding) const
    {
        item.m_sounding = sounding.sounding;
        Q_EMIT item.soundingChanged();
    }
    void operator()(GstItemPipeline::SeekDone done) const
    {
        if (done.serial == item.m_lastSeek)
            item.m_seekTarget.reset();
    }
    void operator()(GstItemPipeline::DurationKnown known) const { item.m_duration = known.seconds; }
    void operator()(GstItemPipeline::Corked state) const { Q_EMIT item.corked(state.corked); }
    void operator()(GstItemPipeline::Ended) const
    {
        item.m_atEnd = true;
        item.m_sounding = false;
        Q_EMIT item.playedToEnd();
    }
    void operator()(const GstItemPipeline::Failed &failed) const
    {
        item.m_status = Status::Failed;
        item.m_error = failed.error;
        item.m_sounding = false;
        item.failTracks(failed.error);
        Q_EMIT item.soundingChanged();
    }
};

GstMediaItem::GstMediaItem(const Surroundings &surroundings, const QUrl &url)
    : m_surroundings(surroundings)
    , m_url(url)
    , m_duration(unknown)
    , m_tap(std::make_shared<AudioTapHost>())
{
    m_tracks.start();
}

GstMediaItem::~GstMediaItem()
{
    close();
    failTracks(QStringLiteral("the item is gone"));
}

QFuture<QList<AudioTrack>> GstMediaItem::loadAudioTracks()
{
    return m_tracks.future();
}

void GstMediaItem::setAudioTap(const AudioTrack &, std::shared_ptr<AudioTap> tap)
{
    m_tap->attach(std::move(tap));
}

void GstMediaItem::open(float volume)
{
    close();
    m_status = Status::Unknown;
    m_error.reset();
    m_atEnd = false;
    m_session = std::make_shared<int>();
    auto listener = [this, &queue = m_surroundings.queue,
                     session = std::weak_ptr<int>(m_session)](GstItemPipeline::Event event) {
        queue.post([this, session, event = std::move(event)] {
            if (session.lock())
                std::visit(Handler{*this}, event);
        });
    };
    m_pipeline = std::make_shared<GstItemPipeline>(
        *m_surroundings.threads,
        GstItemPipeline::Config{m_url.toEncoded(), m_surroundings.sink, m_surroundings.networkTimeout, volume,
                                m_tap},
        std::move(listener));
    m_pipeline->open();
}

void GstMediaItem::close()
{
    if (!m_pipeline)
        return;
    m_session.reset();
    m_pipeline->close();
    m_pipeline.reset();
    m_sounding = false;
    m_seekTarget.reset();
    failTracks(QStringLiteral("the item was replaced before its tracks were known"));
}

void GstMediaItem::setPlaying(bool playing)
{
    m_sounding = m_sounding && playing;
    if (m_pipeline)
        m_pipeline->setPlaying(playing);
}

void GstMediaItem::setVolume(float volume)
{
    if (m_pipeline)
        m_pipeline->setVolume(volume);
}

void GstMediaItem::seek(double seconds)
{
    if (!m_pipeline)
        return;
    m_seekTarget = seconds;
    m_atEnd = false;
    m_pipeline->seek(seconds, ++m_lastSeek);
}

double GstMediaItem::position() const
{
    if (!m_pipeline || m_status != Status::ReadyToPlay)
        return unknown;
    return m_seekTarget ? *m_seekTarget : m_pipeline->position();
}

void GstMediaItem::failTracks(const QString &error)
{
    if (std::exchange(m_tracksSettled, true))
        return;
    m_tracks.setException(std::make_exception_ptr(std::runtime_error(error.toStdString())));
    m_tracks.finish();
}

} // namespace navorin
