#include "Views/Story/StoryView.h"

#include "Platform/Desktop/MediaLibrary.h"
#include "Platform/Desktop/ShareSheet.h"
#include "Platform/Tasks/Detached.h"
#include "Services/Artwork/ArtworkPreparation.h"
#include "Services/Backend/APIClient.h"
#include "Services/Offline/OfflineStore.h"
#include "Services/Playback/RadioPlayer.h"
#include "Services/Story/StoryVideoRenderer.h"
#include "Views/Lyrics/LyricsClock.h"
#include "Views/Playback/PlayerDecisions.h"
#include "Views/Shared/ThemeFunctions.h"
#include "Views/ViewSetup.h"

#include <QCoro/QCoroFuture>
#include <QThreadPool>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qint64 largestCover = 32 << 20;

QString descriptionOf(const std::exception &error)
{
    const auto *ofStory = dynamic_cast<const StoryError *>(&error);
    return ofStory ? ofStory->description() : errorDescription(error);
}

} // namespace

StoryView::StoryView(QObject *parent)
    : StoryView(RadioPlayer::shared().currentStation(),
                {RadioPlayer::shared(), OfflineStore::shared(), APIClient::shared(),
                 StoryVideoRenderer::shared(), *viewSurroundings().shareSheet,
                 *viewSurroundings().mediaLibrary},
                parent)
{
}

StoryView::StoryView(std::optional<Station> station, const Sources &sources, QObject *parent)
    : QObject(parent)
    , m_sources(sources)
    , m_station(std::move(station))
{
    load();
}

StoryView::~StoryView()
{
    m_stop.request_stop();
}

StoryView::Content StoryView::content() const
{
    if (m_loadFailed)
        return LoadFailed;
    if (!m_lyrics)
        return Loading;
    return m_lyrics->found.value_or(false) && !lines().isEmpty() ? Picker : NotFound;
}

QStringList StoryView::rows() const
{
    QStringList rows;
    for (qsizetype i = 0; i < lines().size(); ++i)
        rows.append(lineRowText(lines(), i));
    return rows;
}

QString StoryView::startText() const
{
    return numberText(lines(), m_range.start);
}

QString StoryView::endText() const
{
    return numberText(lines(), m_range.end);
}

QString StoryView::lengthText() const
{
    return navorin::lengthText(smartDuration(lines(), m_range));
}

QString StoryView::percentText() const
{
    return navorin::percentText(m_renderProgress);
}

const QList<LyricsLine> &StoryView::lines() const
{
    static const QList<LyricsLine> none;
    return m_lyrics && m_lyrics->lines ? *m_lyrics->lines : none;
}

void StoryView::load()
{
    m_loadFailed = !m_station;
    m_lyrics.reset();
    m_isRendering = false;
    setVideo({});
    Q_EMIT contentChanged();
    Q_EMIT renderChanged();
    if (!m_station)
        return;
    auto answer = m_sources.client.get<LyricsEnvelope>(u"api/lyrics"_s, lyricsQuery(*m_station, 0));
    detach(runLoad(this, std::move(answer), ++m_question), "loading the lyrics of a story");
}

QCoro::Task<void> StoryView::runLoad(View view, QFuture<LyricsEnvelope> answer, int question)
{
    std::optional<LyricsData> lyrics;
    try {
        const auto envelope = co_await answer;
        lyrics = envelope.data;
    } catch (const std::exception &) {
        lyrics.reset(); // the screen says that nothing came; why is not for it to tell
    }
    if (view && view->m_question == question)
        view->take(std::move(lyrics));
}

void StoryView::take(std::optional<LyricsData> lyrics)
{
    m_loadFailed = !lyrics;
    m_lyrics = std::move(lyrics);
    if (m_lyrics)
        sortLines(*m_lyrics);
    if (!lines().isEmpty())
        setRange(defaultRange(lines().size()));
    Q_EMIT contentChanged();
}

void StoryView::pickStart(int index)
{
    setRange(withStart(m_range, index));
}

void StoryView::pickEnd(int index)
{
    setRange(withEnd(m_range, index));
}

void StoryView::setRange(LineRange range)
{
    m_range = range;
    Q_EMIT rangeChanged();
}

void StoryView::generate()
{
    const auto &station = m_sources.player.currentStation();
    if (m_isRendering || !station || content() != Picker)
        return;
    m_isRendering = true;
    m_errorText.clear();
    m_renderProgress = 0;
    setVideo({});
    Q_EMIT renderChanged();
    auto config = configFor(*station);
    m_videoTitle = config.artist.isEmpty() ? config.title : QString(config.title % u" - "_s % config.artist);
    detach(runGenerate(this, std::move(config), coverOf(*station), m_stop.get_token()), "making a story");
}

StoryConfig StoryView::configFor(const Station &station) const
{
    StoryConfig config;
    config.title = station.displayTrackTitle();
    config.artist = station.displayArtist();
    if (config.artist.isEmpty())
        config.artist = station.displayName();
    config.themeColor = m_sources.player.themeColor();
    config.accentColor = ThemeFunctions::accent();
    config.lines = lines();
    config.startLine = m_range.start;
    config.endLine = m_range.end;
    config.duration = smartDuration(lines(), m_range);
    if (station.hasTracks()) {
        config.audioURL = audioOf(station);
        config.audioStart = storyAudioStart(m_lyrics, m_range.start);
    }
    return config;
}

std::optional<QUrl> StoryView::audioOf(const Station &station) const
{
    const auto *track = station.currentTrack();
    if (track && m_sources.offline.isDownloaded(track))
        return m_sources.offline.audioURL(*track);
    return m_sources.client.absolute(station.currentStreamURL());
}

/// A null picture if there is none, for whatever reason.
QFuture<QImage> StoryView::coverOf(const Station &station) const
{
    auto text = station.currentTrackArtworkURL();
    if (!text)
        text = station.artworkURL;
    const auto address = m_sources.client.absolute(text);
    if (!address)
        return QtFuture::makeReadyFuture(QImage());
    return m_sources.client.data(*address, largestCover)
        .then(QThreadPool::globalInstance(),
              [](const QFuture<QByteArray> &bytes) { return wholeArtwork(bytes.result()); });
}

QCoro::Task<void> StoryView::runGenerate(View view, StoryConfig config, QFuture<QImage> cover,
                                         std::stop_token stop)
{
    try {
        config.coverImage = co_await cover;
    } catch (const std::exception &) {
        config.coverImage = {}; // a story can do without
    }
    cover = {};
    if (!view)
        co_return;
    QString failure;
    QUrl video;
    try {
        auto rendering = view->m_sources.renderer.render(
            std::move(config),
            [view](double progress) {
                if (view)
                    view->setProgress(progress);
            },
            std::move(stop));
        video = co_await rendering;
    } catch (const std::exception &error) {
        failure = u"خطا در ساخت: "_s % descriptionOf(error);
    }
    if (!view)
        co_return;
    if (failure.isEmpty()) {
        view->m_renderProgress = 1;
        view->setVideo(video);
    }
    view->endRender(failure);
}

void StoryView::setProgress(double progress)
{
    m_renderProgress = progress;
    Q_EMIT renderChanged();
}

void StoryView::setVideo(const QUrl &address)
{
    m_videoURL = address;
    m_savedToLibrary = false;
    Q_EMIT videoChanged();
}

void StoryView::endRender(const QString &error)
{
    m_isRendering = false;
    m_errorText = error;
    Q_EMIT renderChanged();
}

void StoryView::saveToLibrary()
{
    if (m_videoURL.isEmpty())
        return;
    auto result = m_sources.mediaLibrary.keepVideo(m_videoURL.toLocalFile(), m_videoTitle);
    detach(runSave(this, std::move(result), m_videoURL), "saving a story");
}

QCoro::Task<void> StoryView::runSave(View view, QFuture<QString> result, QUrl video)
{
    const auto failure = co_await result;
    if (!view || view->m_videoURL != video)
        co_return;
    view->m_savedToLibrary = failure.isEmpty();
    if (!failure.isEmpty())
        view->m_errorText = u"خطا در ذخیره: "_s % failure;
    Q_EMIT view->videoChanged();
    Q_EMIT view->renderChanged();
}

void StoryView::openWith()
{
    if (!m_videoURL.isEmpty())
        m_sources.shareSheet.openWith(m_videoURL.toLocalFile());
}

void StoryView::showInFileManager()
{
    if (!m_videoURL.isEmpty())
        m_sources.shareSheet.showInFileManager(m_videoURL.toLocalFile());
}

void StoryView::copyVideo()
{
    if (!m_videoURL.isEmpty())
        m_sources.shareSheet.copy(m_videoURL.toLocalFile());
}

QString StoryView::timeText(qint64 milliseconds)
{
    return formatSeconds(double(milliseconds) / 1000);
}

} // namespace navorin
