#pragma once

#include "Platform/Audio/GstPointers.h"

#include <QString>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <stop_token>

namespace navorin {

/// A pipeline that one thread builds and waits for: it turns the pipeline's messages into a state under a
/// mutex, so that waiting for a message, for room or for being stopped is one wait. Its streaming threads,
/// and the encoder's, run below the priority of the rest of the program: a window that is drawn meanwhile
/// stays smooth.
class GstWatch
{
public:
    /// A description as of gst-launch. `stop` ends all waiting.
    GstWatch(const char *description, std::stop_token stop);
    ~GstWatch();
    GstWatch(const GstWatch &) = delete;
    GstWatch &operator=(const GstWatch &) = delete;

    /// Null if a part is missing.
    [[nodiscard]] GstElement *pipeline() const { return m_pipeline.get(); }
    [[nodiscard]] GstPtr<GstElement> element(const char *name) const;
    /// False if it failed at once.
    [[nodiscard]] bool setState(GstState state);

    [[nodiscard]] bool hasEnded() const;
    [[nodiscard]] bool hasFailed() const;
    /// Failed or stopped: nothing will come of it any more.
    [[nodiscard]] bool isOver() const;
    /// The disk was full.
    [[nodiscard]] bool ranOutOfSpace() const;
    /// Takes the note that the pipeline has settled in its state since it was taken last.
    [[nodiscard]] bool takeSettled();

    /// Changes what `isDone` of a wait looks at, from any thread.
    void change(const std::function<void()> &work);
    /// Waits until `isDone`, which is called under the mutex, or the pipeline has failed, ended or been
    /// stopped. True if `isDone`.
    bool wait(const std::function<bool()> &isDone);
    /// Waits for the end, `interval` at most; true if there is an end, good or bad.
    bool waitForEnd(std::chrono::milliseconds interval);

private:
    static GstBusSyncReply onMessage(GstBus *bus, GstMessage *message, gpointer data);
    void handle(GstMessage *message);
    void handleError(GstMessage *message);

    GstPtr<GstElement> m_pipeline;
    const std::stop_token m_stop;
    mutable std::mutex m_mutex; ///< guards all below
    std::condition_variable m_changed;
    bool m_hasEnded = false;
    bool m_hasFailed = false;
    bool m_ranOutOfSpace = false;
    bool m_hasSettled = false;
    std::stop_callback<std::function<void()>> m_onStop;
};

} // namespace navorin
