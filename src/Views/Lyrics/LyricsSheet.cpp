#include "Views/Lyrics/LyricsSheet.h"

#include "Platform/Tasks/Detached.h"
#include "Services/Backend/APIClient.h"
#include "Services/Playback/RadioPlayer.h"
#include "Views/Shared/ShownText.h"
#include "Views/ViewSetup.h"

#include <QCoro/QCoroFuture>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

LyricsSheet::LyricsSheet(QObject *parent)
    : LyricsSheet(RadioPlayer::shared().currentStation().value_or(Station()),
                  {RadioPlayer::shared(), APIClient::shared(), viewSurroundings().queue}, parent)
{
}

LyricsSheet::LyricsSheet(Station station, Sources sources, QObject *parent)
    : QObject(parent)
    , m_station(std::move(station))
    , m_sources(std::move(sources))
{
    m_clock.reset(m_sources.now());
    auto &player = m_sources.player;
    connect(&player, &RadioPlayer::currentStationChanged, this, &LyricsSheet::followTrack);
    connect(&player, &RadioPlayer::isPlayingChanged, this, &LyricsSheet::followPlayback);
    connect(&player, &RadioPlayer::isLiveChanged, this, &LyricsSheet::canSeekChanged);
    connect(&player, &RadioPlayer::themeColorChanged, this, &LyricsSheet::themeColorChanged);
}

const Station &LyricsSheet::effectiveStation() const
{
    const auto &current = m_sources.player.currentStation();
    return current ? *current : m_station;
}

LyricsSheet::Content LyricsSheet::content() const
{
    if (m_loadFailed)
        return Failed;
    if (!m_lyrics)
        return Loading;
    return m_lyrics->found.value_or(false) && m_lyrics->lines && !m_lyrics->lines->isEmpty() ? Lines
                                                                                             : NotFound;
}

QString LyricsSheet::title() const
{
    return shownText(effectiveStation().displayTrackTitle());
}

QString LyricsSheet::subtitle() const
{
    const auto artist = effectiveStation().displayArtist();
    return shownText(artist.isEmpty() ? effectiveStation().displayName() : artist);
}

QColor LyricsSheet::themeColor() const
{
    return m_sources.player.themeColor();
}

bool LyricsSheet::canSeek() const
{
    return !m_sources.player.isLive();
}

void LyricsSheet::setSeen(bool seen)
{
    if (seen == m_isSeen)
        return;
    m_isSeen = seen;
    Q_EMIT isSeenChanged();
    updateTicking();
}

void LyricsSheet::appear()
{
    m_lastTrackID = effectiveStation().currentTrackID();
    load();
}

void LyricsSheet::followTrack()
{
    Q_EMIT stationChanged();
    auto trackID = effectiveStation().currentTrackID();
    if (trackID == m_lastTrackID)
        return;
    m_lastTrackID = std::move(trackID);
    // In a task of its own: the player is in the middle of its change.
    m_sources.queue.post([sheet = QPointer(this)] {
        if (sheet)
            sheet->load();
    });
}

void LyricsSheet::load()
{
    m_loadFailed = false;
    m_lyrics.reset();
    m_clock.reset(m_sources.now());
    show();
    detach(fetch(this), "fetching lyrics");
}

QCoro::Task<void> LyricsSheet::fetch(QPointer<LyricsSheet> sheet)
{
    const auto &sources = sheet->m_sources;
    const auto query = lyricsQuery(sheet->effectiveStation(), sources.player.duration());
    auto request = sources.client.get<LyricsEnvelope>(u"api/lyrics"_s, query);
    try {
        auto envelope = co_await std::move(request);
        if (sheet)
            sheet->store(std::move(envelope.data));
    } catch (const std::exception &) {
        if (sheet)
            sheet->fail();
    }
}

void LyricsSheet::store(std::optional<LyricsData> lyrics)
{
    m_lyrics = std::move(lyrics);
    if (m_lyrics)
        m_clock.adopt(m_lyrics->elapsedSeconds, m_sources.now());
    show();
}

void LyricsSheet::fail()
{
    m_loadFailed = true;
    show();
}

void LyricsSheet::followPlayback()
{
    const auto now = m_sources.now();
    if (m_sources.player.isPlaying())
        m_clock.resume(now);
    else if (m_sources.player.isLive())
        m_clock.freeze(now);
}

void LyricsSheet::show()
{
    m_lines.setLines(content() == Lines ? *m_lyrics->lines : QList<LyricsLine>());
    setActiveIndex(-1);
    Q_EMIT contentChanged();
    updateTicking();
}

void LyricsSheet::updateTicking()
{
    m_ticking.reset();
    if (content() != Lines || !m_isSeen)
        return;
    m_ticking = m_sources.queue.every(lyricsTick, [this] { tick(); });
    tick();
}

void LyricsSheet::tick()
{
    setActiveIndex(activeLine(m_lines.lines(), currentPosition()));
}

double LyricsSheet::currentPosition() const
{
    const auto &player = m_sources.player;
    return player.isLive() ? m_clock.position(m_sources.now()) : player.currentTime();
}

void LyricsSheet::setActiveIndex(int index)
{
    if (index == m_activeIndex)
        return;
    m_activeIndex = index;
    Q_EMIT activeIndexChanged();
}

void LyricsSheet::toggleTranslation()
{
    m_showTranslation = !m_showTranslation;
    Q_EMIT showTranslationChanged();
}

void LyricsSheet::togglePlayPause()
{
    m_sources.player.togglePlayPause();
}

void LyricsSheet::seekTo(int row)
{
    if (row < 0 || row >= m_lines.rowCount())
        return;
    const auto time = m_lines.lines().at(row).time;
    if (!time || m_sources.player.isLive())
        return;
    m_sources.player.seek(*time);
    m_clock.frozenPosition.reset();
}

} // namespace navorin
