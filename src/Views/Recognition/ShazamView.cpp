#include "Views/Recognition/ShazamView.h"

#include "Platform/Tasks/Detached.h"
#include "Platform/Tasks/MainQueue.h"
#include "Services/Playback/RadioPlayer.h"
#include "Services/Recognition/ShazamManager.h"
#include "Views/Playback/StationSelection.h"
#include "Views/ViewSetup.h"

#include <QCoro/QCoroFuture>
#include <QPointer>

namespace navorin {

using namespace std::chrono_literals;

namespace {

constexpr auto startDelay = 800ms;

/// Also when the sheet has been closed by then.
QCoro::Task<void> startSoon(QPointer<ShazamManager> shazam, QFuture<void> delay)
{
    co_await delay;
    if (shazam)
        shazam->startRecognition();
}

} // namespace

ShazamView::ShazamView(QObject *parent)
    : ShazamView(ShazamManager::shared(), RadioPlayer::shared(), viewSurroundings().queue, parent)
{
}

ShazamView::ShazamView(ShazamManager &shazam, RadioPlayer &player, MainQueue &queue, QObject *parent)
    : QObject(parent)
    , m_shazam(shazam)
    , m_player(player)
{
    for (const auto signal : {&ShazamManager::isListeningChanged, &ShazamManager::isProcessingChanged,
                              &ShazamManager::errorMessageChanged, &ShazamManager::recognizedTrackChanged})
        connect(&m_shazam, signal, this, &ShazamView::changed);
    startIfAskedTo(queue);
}

ShazamView::~ShazamView()
{
    disconnect(&m_shazam, nullptr, this, nullptr);
    forget();
}

void ShazamView::startIfAskedTo(MainQueue &queue)
{
    const auto asked = m_shazam.autoStartOnOpen();
    m_shazam.setAutoStartOnOpen(false);
    if (asked && !isListening() && !isProcessing() && !hasTrack())
        detach(startSoon(&m_shazam, queue.sleep(startDelay)), "listening as soon as the sheet is open");
}

ShazamView::Status ShazamView::status() const
{
    return Status(shazamStatus(isListening(), isProcessing(), hasFailed(), hasTrack()));
}

QString ShazamView::statusText() const
{
    return shazamStatusText(ShazamStatus(status()), m_shazam.errorMessage().value_or(QString()));
}

bool ShazamView::isListening() const
{
    return m_shazam.isListening();
}

bool ShazamView::isProcessing() const
{
    return m_shazam.isProcessing();
}

bool ShazamView::hasFailed() const
{
    return m_shazam.errorMessage().has_value();
}

bool ShazamView::hasTrack() const
{
    return m_shazam.recognizedTrack().has_value();
}

QString ShazamView::title() const
{
    return m_shazam.recognizedTrack().value_or(ShazamData()).title.value_or(QString());
}

QString ShazamView::artist() const
{
    return m_shazam.recognizedTrack().value_or(ShazamData()).artist.value_or(QString());
}

QString ShazamView::genre() const
{
    return m_shazam.recognizedTrack().value_or(ShazamData()).genre.value_or(QString());
}

QString ShazamView::artworkAddress() const
{
    return m_shazam.recognizedTrack().value_or(ShazamData()).artworkURL.value_or(QString());
}

void ShazamView::listen()
{
    m_shazam.startRecognition();
}

void ShazamView::tryAgain()
{
    forget();
    m_shazam.startRecognition();
}

void ShazamView::play()
{
    const auto &track = m_shazam.recognizedTrack();
    if (!track)
        return;
    selectSoon(m_player, stationFor(*track));
    m_player.setFullPlayerPresented(true);
    Q_EMIT finished();
}

void ShazamView::forget()
{
    m_shazam.setErrorMessage({});
    m_shazam.setRecognizedTrack({});
}

} // namespace navorin
