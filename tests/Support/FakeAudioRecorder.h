#pragma once

#include "Platform/Audio/AudioRecorder.h"

#include <QFile>
#include <QPromise>
#include <QStringList>

#include <vector>

namespace navorin {

/// A microphone that a test speaks into. Without an answer set, requests for permission wait for one.
class FakeAudioRecorder final : public AudioRecorder
{
public:
    [[nodiscard]] QFuture<bool> requestPermission() override
    {
        m_waiting.emplace_back();
        m_waiting.back().start();
        auto future = m_waiting.back().future();
        if (granted)
            answerPermission(*granted);
        return future;
    }
    [[nodiscard]] QFuture<std::shared_ptr<AudioRecording>> record(const QString &path,
                                                                  const RecordingSettings &) override
    {
        paths << path;
        if (!begins)
            return QtFuture::makeReadyFuture(std::shared_ptr<AudioRecording>());
        return QtFuture::makeReadyFuture(std::shared_ptr<AudioRecording>(new Recording(*this, path)));
    }

    /// Of all that wait.
    void answerPermission(bool answer)
    {
        for (auto &promise : std::exchange(m_waiting, {})) {
            promise.addResult(answer);
            promise.finish();
        }
    }
    [[nodiscard]] std::size_t asked() const { return m_waiting.size(); }

    std::optional<bool> granted = true;
    bool begins = true;
    QByteArray sound = "sound";
    QStringList paths;
    int running = 0;

private:
    class Recording final : public AudioRecording
    {
    public:
        Recording(FakeAudioRecorder &recorder, const QString &path)
            : m_recorder(recorder)
            , m_file(path)
        {
            ++m_recorder.running;
            if (!m_file.open(QIODevice::WriteOnly))
                qFatal("a test's snippet cannot be written");
        }
        ~Recording() override { --m_recorder.running; }
        [[nodiscard]] QFuture<void> stop() override
        {
            m_file.write(m_recorder.sound);
            m_file.close();
            return QtFuture::makeReadyFuture();
        }

    private:
        FakeAudioRecorder &m_recorder;
        QFile m_file;
    };

    std::vector<QPromise<bool>> m_waiting;
};

} // namespace navorin
