#pragma once

#include <QByteArray>

#include <condition_variable>
#include <mutex>
#include <optional>
#include <vector>

namespace navorin::demo {

/// One encoded frame and how many samples it adds when decoded.
struct Frame
{
    QByteArray bytes;
    int samples = 0;
};

/// The frames of one encoded piece, readable while they are still being encoded. Any thread.
class FrameList
{
public:
    void setHeaders(std::vector<QByteArray> headers);
    void append(Frame frame);
    /// No more frames will come. `failed`: because the encoder gave up.
    void finish(bool failed = false);

    /// The frame, waited for; absent past the end.
    [[nodiscard]] std::optional<Frame> frame(std::size_t index) const;
    /// What a decoder wants before the first frame (the three of Vorbis), waited for.
    [[nodiscard]] std::vector<QByteArray> headers() const;
    /// All frames, waited for; absent when encoding failed.
    [[nodiscard]] std::optional<std::vector<Frame>> all() const;
    /// The index of the frame that sounds at this sample, if everything is there; never waits.
    [[nodiscard]] std::optional<std::size_t> indexAt(std::int64_t sample) const;

private:
    mutable std::mutex m_mutex;
    mutable std::condition_variable m_grown;
    std::vector<QByteArray> m_headers;
    std::vector<Frame> m_frames;
    bool m_finished = false;
    bool m_failed = false;
};

} // namespace navorin::demo
