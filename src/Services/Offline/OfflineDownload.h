#pragma once

#include "Models/Station.h"
#include "Platform/Http/HttpSession.h"
#include "Platform/Tasks/SteadyClock.h"

#include <QByteArray>
#include <QMutex>
#include <QString>
#include <QUrl>

#include <chrono>
#include <functional>
#include <optional>
#include <stop_token>
#include <string>

namespace navorin {

/// The share of a download that its bar shows; the last step is the finished track itself.
[[nodiscard]] double shownProgress(qint64 received, qint64 expected);

/// A track on its way to the disk: its audio, which is gathered in memory, and whether it is still wanted.
/// Usable from any thread.
class OfflineDownload final : public HttpByteSink
{
public:
    /// Told at most five times a second, on the session's thread.
    using Report = std::function<void(double progress)>;

    OfflineDownload(QString key, PlaylistTrack track, QUrl address, SteadyClock now);

    const QString key; ///< the same at every step, even if the track has no identity
    const PlaylistTrack track;
    const QUrl address;

    /// Before the stream starts.
    void setReport(Report report) { m_report = std::move(report); }

    void cancel() { m_stop.request_stop(); }
    [[nodiscard]] std::stop_token stopToken() const { return m_stop.get_token(); }

    /// Refuses a stream without a length: one that may never end cannot be kept.
    void begin(qint64 expectedLength) override;
    void receive(QByteArrayView bytes) override;

    /// The answer's head has come: being given up is no failure any more.
    [[nodiscard]] bool hasBegun() const;
    /// What has come so far, without a copy: valid until more comes or it is discarded.
    [[nodiscard]] QByteArray audio() const;
    void discardAudio();

private:
    [[nodiscard]] std::optional<double> dueProgress();

    const SteadyClock m_now;
    Report m_report;
    std::stop_source m_stop;
    mutable QMutex m_lock; ///< guards all below
    bool m_hasBegun = false;
    qint64 m_expectedLength = 0;
    std::string m_audio;
    std::optional<std::chrono::steady_clock::time_point> m_lastReport;
};

/// Gathers a picture's bytes, and ends a stream that brings more than a picture has.
class OfflineArtwork final : public HttpByteSink
{
public:
    void begin(qint64) override {}
    void receive(QByteArrayView bytes) override;

    [[nodiscard]] QByteArray bytes() const;

private:
    mutable QMutex m_lock;
    QByteArray m_bytes;
};

} // namespace navorin
