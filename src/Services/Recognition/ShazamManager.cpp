#include "Services/Recognition/ShazamManager.h"

#include "Platform/Audio/AudioRecorder.h"
#include "Platform/Desktop/SystemLog.h"
#include "Platform/Storage/FileStore.h"
#include "Platform/Storage/UserDefaults.h"
#include "Platform/Tasks/Detached.h"
#include "Services/Backend/APIClient.h"
#include "Services/Playback/RadioPlayer.h"
#include "Shared/ShazamIntents.h"

#include <QCoro/QCoroFuture>
#include <QDir>
#include <QThreadPool>

#include <stdexcept>
#include <utility>

namespace navorin {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto snippetLength = 4500ms;

const QString permissionText = u"دسترسی به میکروفون برای شناسایی آهنگ ضروری است."_s;
const QString beginningText = u"خطا در آغاز ضبط صدا"_s;
const QString noMatchText = u"متاسفانه آهنگی شناسایی نشد. در محیط خلوتتر دوباره امتحان کنید."_s;

/// The snippet could not be read; nothing that a person need be told.
class UnreadableSnippet : public std::runtime_error
{
public:
    UnreadableSnippet()
        : std::runtime_error("the snippet cannot be read")
    {
    }
};

QFuture<QByteArray> contents(const FileStore &files, const QString &path)
{
    return QtFuture::makeReadyFuture().then(QThreadPool::globalInstance(), [&files, path] {
        auto bytes = files.read(path);
        if (!bytes)
            throw UnreadableSnippet();
        return *std::move(bytes);
    });
}

QString failureText(const std::exception &error)
{
    const bool hasNoWords = dynamic_cast<const std::runtime_error *>(&error) != nullptr;
    return hasNoWords ? noMatchText : errorDescription(error);
}

/// A stamp of any other type than a number counts as none.
double stampIn(const UserDefaults &suite)
{
    const auto value = suite.object(ShazamRequest::key);
    return value.typeId() == QMetaType::Double ? value.toDouble() : 0;
}

} // namespace

ShazamManager &ShazamManager::shared()
{
    return instance().get();
}

SharedInstance<ShazamManager> &ShazamManager::instance()
{
    static SharedInstance<ShazamManager> holder;
    return holder;
}

ShazamManager::ShazamManager(Surroundings surroundings)
    : m_surroundings(std::move(surroundings))
{
}

ShazamManager::~ShazamManager()
{
    m_snippet.reset();
    for (const auto &path : std::as_const(m_files))
        m_surroundings.files.remove(path);
}

void ShazamManager::requestOpen(bool autoStart)
{
    m_surroundings.log.write(SystemLog::Level::Info,
                             u"requestOpen called, autoStart=%1"_s.arg(autoStart ? u"true"_s : u"false"_s));
    m_autoStartOnOpen = autoStart;
    setOpenRequest(true);
}

void ShazamManager::checkPendingExternalRequest()
{
    auto *suite = m_surroundings.suite();
    auto &log = m_surroundings.log;
    if (!suite) {
        log.write(SystemLog::Level::Error, u"checkPendingExternalRequest: suite is nil"_s);
        return;
    }
    const auto stamp = stampIn(*suite);
    log.write(SystemLog::Level::Info,
              u"checkPendingExternalRequest: timestamp="_s + QString::number(stamp, 'f', 6));
    if (!(stamp > 0) || m_surroundings.now() - stamp >= ShazamRequest::validity)
        return;
    suite->setObject(ShazamRequest::key, {});
    log.write(SystemLog::Level::Info, u"checkPendingExternalRequest: opening shazam sheet"_s);
    requestOpen(true);
}

void ShazamManager::startRecognition()
{
    if (!m_isListening && !m_isProcessing)
        detach(runCycle(this), "recognising a song");
}

QCoro::Task<void> ShazamManager::runCycle(QPointer<ShazamManager> manager)
{
    const bool granted = co_await manager->m_surroundings.recorder.requestPermission();
    if (!manager)
        co_return;
    if (granted)
        co_await recordAndSend(manager);
    else
        manager->setErrorMessage(permissionText);
}

/// Two cycles may come this far at once, when both were asked for before either listened. The later recording
/// then replaces the earlier one, and whichever cycle's time is up first sends it.
QCoro::Task<void> ShazamManager::recordAndSend(QPointer<ShazamManager> manager)
{
    const auto path = manager->newSnippetPath();
    auto recording = co_await manager->m_surroundings.recorder.record(path, RecordingSettings());
    if (!manager)
        co_return;
    if (!recording) {
        manager->failToBegin();
        co_return;
    }
    manager->listen({std::move(recording), path});
    co_await manager->m_surroundings.queue.sleep(snippetLength);
    if (!manager || !manager->m_isListening || !manager->m_snippet)
        co_return;
    auto snippet = *std::exchange(manager->m_snippet, std::nullopt);
    manager->setListening(false);
    manager->setProcessing(true);
    detach(uploadSample(manager, std::move(snippet)), "sending a snippet");
}

void ShazamManager::listen(Snippet snippet)
{
    if (m_snippet && m_snippet->path != snippet.path)
        discardSnippet();
    m_snippet = std::move(snippet);
    setListening(true);
    setProcessing(false);
    setErrorMessage({});
    setRecognizedTrack({});
}

void ShazamManager::failToBegin()
{
    discardSnippet();
    cleanupAudioSession();
    setListening(false);
    setErrorMessage(beginningText);
}

QCoro::Task<void> ShazamManager::uploadSample(QPointer<ShazamManager> manager, Snippet snippet)
{
    const auto &files = manager->m_surroundings.files;
    std::optional<ShazamData> track;
    std::optional<QString> failure;
    try {
        co_await snippet.recording->stop();
        const auto audio = co_await contents(files, snippet.path);
        if (manager)
            track = co_await manager->m_surroundings.client.recognize(audio);
    } catch (const std::exception &error) {
        failure = failureText(error);
    }
    if (!manager)
        co_return;
    manager->publish(std::move(track), std::move(failure));
    manager->removeFile(snippet.path);
    manager->cleanupAudioSession();
}

void ShazamManager::publish(std::optional<ShazamData> track, std::optional<QString> failure)
{
    setProcessing(false);
    if (failure)
        setErrorMessage(std::move(failure));
    else
        setRecognizedTrack(std::move(track));
}

/// A desktop knows no session of ours that would have to be closed: recording ends with the recording.
void ShazamManager::cleanupAudioSession()
{
    m_surroundings.queue.post([player = QPointer(&m_surroundings.player)] {
        if (player)
            player->configureAudioSession();
    });
}

void ShazamManager::discardSnippet()
{
    if (const auto snippet = std::exchange(m_snippet, std::nullopt))
        removeFile(snippet->path);
}

QString ShazamManager::newSnippetPath()
{
    const auto seconds = QString::number(qint64(m_surroundings.now()));
    QString path = QDir::tempPath() + u"/shazam_snippet_"_s + seconds + u".m4a"_s;
    m_files.insert(path);
    return path;
}

void ShazamManager::removeFile(const QString &path)
{
    m_files.remove(path);
    m_surroundings.files.remove(path);
}

void ShazamManager::setRecognizedTrack(std::optional<ShazamData> track)
{
    m_recognizedTrack = std::move(track);
    Q_EMIT recognizedTrackChanged();
}

void ShazamManager::setErrorMessage(std::optional<QString> message)
{
    m_errorMessage = std::move(message);
    Q_EMIT errorMessageChanged();
}

void ShazamManager::setOpenRequest(bool requested)
{
    m_openRequest = requested;
    Q_EMIT openRequestChanged();
}

void ShazamManager::setListening(bool listening)
{
    m_isListening = listening;
    Q_EMIT isListeningChanged();
}

void ShazamManager::setProcessing(bool processing)
{
    m_isProcessing = processing;
    Q_EMIT isProcessingChanged();
}

} // namespace navorin
