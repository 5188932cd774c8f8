#pragma once

#include "Models/APIModels.h"
#include "Platform/Tasks/MainQueue.h"
#include "Services/SharedInstance.h"

#include <QCoro/QCoroTask>
#include <QObject>
#include <QPointer>
#include <QSet>

#include <functional>
#include <memory>
#include <optional>

namespace navorin {

class APIClient;
class AudioRecorder;
class AudioRecording;
class FileStore;
class RadioPlayer;
class SystemLog;
class UserDefaults;

/// Tells what song is playing around the listener: records four and a half seconds from the microphone, asks
/// the backend and publishes the answer. The radio goes on meanwhile. Also where all ways of asking from
/// outside the screen meet. UI thread only.
///
/// A cycle cannot be cancelled. What came of it stays until the next one listens, or until a screen clears
/// it.
class ShazamManager : public QObject
{
    Q_OBJECT
public:
    static ShazamManager &shared();
    /// A cycle under way is given up, and its file removed.
    ~ShazamManager() override;

    /// The microphone is recording.
    [[nodiscard]] bool isListening() const { return m_isListening; }
    /// The snippet is on its way to the backend.
    [[nodiscard]] bool isProcessing() const { return m_isProcessing; }
    [[nodiscard]] const std::optional<ShazamData> &recognizedTrack() const { return m_recognizedTrack; }
    void setRecognizedTrack(std::optional<ShazamData> track);
    /// The Persian text of the last failure.
    [[nodiscard]] const std::optional<QString> &errorMessage() const { return m_errorMessage; }
    void setErrorMessage(std::optional<QString> message);
    /// Somebody wants the recognition screen; whoever opens it takes the request back.
    [[nodiscard]] bool openRequest() const { return m_openRequest; }
    void setOpenRequest(bool requested);
    /// The next opening of the screen is to begin by itself. Changes are not announced.
    [[nodiscard]] bool autoStartOnOpen() const { return m_autoStartOnOpen; }
    void setAutoStartOnOpen(bool starts) { m_autoStartOnOpen = starts; }

    void requestOpen(bool autoStart);
    /// Looks for a request that was left in the shared suite, and opens the screen for one that is young
    /// enough. To be called whenever the app comes to the front.
    void checkPendingExternalRequest();
    /// Begins a cycle if none is under way.
    void startRecognition();

Q_SIGNALS:
    void isListeningChanged();
    void isProcessingChanged();
    void recognizedTrackChanged();
    void errorMessageChanged();
    void openRequestChanged();

private:
    friend class NavorinRadioApp;
    friend struct TestAccess;

    /// All that it stands on; each must outlive it.
    struct Surroundings
    {
        AudioRecorder &recorder;
        FileStore &files;
        MainQueue &queue;
        SystemLog &log;
        APIClient &client;
        RadioPlayer &player;
        /// The shared suite, or null while it cannot be opened.
        std::function<UserDefaults *()> suite;
        /// Seconds since 1970.
        std::function<double()> now;
    };
    struct Snippet
    {
        std::shared_ptr<AudioRecording> recording;
        QString path;
    };

    explicit ShazamManager(Surroundings surroundings);
    static SharedInstance<ShazamManager> &instance();

    static QCoro::Task<void> runCycle(QPointer<ShazamManager> manager);
    static QCoro::Task<void> recordAndSend(QPointer<ShazamManager> manager);
    static QCoro::Task<void> uploadSample(QPointer<ShazamManager> manager, Snippet snippet);
    void listen(Snippet snippet);
    void failToBegin();
    void publish(std::optional<ShazamData> track, std::optional<QString> failure);
    void cleanupAudioSession();
    void discardSnippet();
    [[nodiscard]] QString newSnippetPath();
    void removeFile(const QString &path);
    void setListening(bool listening);
    void setProcessing(bool processing);

    Surroundings m_surroundings;
    bool m_isListening = false;
    bool m_isProcessing = false;
    std::optional<ShazamData> m_recognizedTrack;
    std::optional<QString> m_errorMessage;
    bool m_openRequest = false;
    bool m_autoStartOnOpen = false;
    std::optional<Snippet> m_snippet; ///< while it is recorded
    QSet<QString> m_files;            ///< of snippets, that are still to be removed
};

} // namespace navorin
