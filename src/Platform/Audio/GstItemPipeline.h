#pragma once

#include "Platform/Audio/AudioTapHost.h"
#include "Platform/Audio/GstPointers.h"
#include "Platform/Audio/SerialThread.h"

#include <QByteArray>
#include <QString>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <variant>

namespace navorin {

/// The pipeline of one media item: source, decoder, a store of decoded sound, gain, tap, sink.
///
/// It starts on little sound in store, and when the store has run dry it pauses until there is more of it:
/// sound that arrives later than its time would otherwise be thrown away for ever after. All work is done on
/// a thread of its own, because opening, seeking in and closing a stream or a sink can block; the public
/// members only hand it over. Any thread, never blocking.
class GstItemPipeline : public std::enable_shared_from_this<GstItemPipeline>
{
public:
    struct Config
    {
        QByteArray uri;
        QByteArray sink; ///< see makeAudioSink()
        std::chrono::seconds networkTimeout{15};
        float volume = 1;
        std::shared_ptr<AudioTapHost> tap;
    };

    struct TracksKnown
    {
        int count;
    };
    struct Prerolled
    {
    };
    struct Sounding
    {
        bool sounding;
    };
    struct SeekDone
    {
        quint64 serial;
    };
    struct DurationKnown
    {
        double seconds; ///< NaN: endless, or not known
    };
    struct Corked
    {
        bool corked; ///< the sound server asks for silence, or takes that back
    };
    struct Ended
    {
    };
    struct Failed
    {
        QString error;
    };
    using Event =
        std::variant<TracksKnown, Prerolled, Sounding, SeekDone, DurationKnown, Corked, Ended, Failed>;
    /// Called on the pipeline's thread.
    using Listener = std::function<void(Event)>;

    GstItemPipeline(ThreadGroup &threads, Config config, Listener listener);
    ~GstItemPipeline();

    void open();
    void setPlaying(bool playing);
    void setVolume(float volume);
    /// The last of several seeks that wait for each other is carried out.
    void seek(double seconds, quint64 serial);
    /// Seconds; NaN while unknown.
    [[nodiscard]] double position() const;
    /// The listener is not called any more once this returns. The sound stops soon after.
    void close();

private:
    struct Seek
    {
        double seconds;
        quint64 serial;
    };
    using Time = std::chrono::nanoseconds;
    using Clock = std::chrono::steady_clock;
    /// Where the item stood when the sink was last started.
    struct Start
    {
        Clock::time_point at;
        Time runningTime{};
        double position = 0;

        [[nodiscard]] Time age() const { return Clock::now() - at; }
    };

    /// Enough sound to bridge the beats of a stream that is sent at its own pace, little enough to be heard
    /// at once.
    static constexpr Time startLevel = std::chrono::milliseconds(200);
    /// A connection that has failed once will fail again: build up some more.
    static constexpr Time refillLevel = std::chrono::seconds(1);
    /// What is left in store when it counts as run dry.
    static constexpr Time reserve = std::chrono::milliseconds(60);
    /// For some moments after a start the clock of a PulseAudio stream can give nonsense, and it would cling
    /// to it for good if it were read then: nobody reads it before this time has passed.
    static constexpr Time settling = std::chrono::milliseconds(150);
    /// How long the source's own time-out may be overdue.
    static constexpr Time grace = std::chrono::seconds(2);

    void emitEvent(Event event);

    // The pipeline's thread.
    void build();
    [[nodiscard]] GstElement *makeSource();
    [[nodiscard]] bool addSoundChain();
    [[nodiscard]] bool addDecodingChain();
    void destroy();
    void fail(const QString &error);
    void apply();
    void startSounding();
    void stopSounding();
    void setState(GstState state);
    void startFilling(Time target);
    void filled(int turn);
    void watchStore();
    void checkStore(Time seenEnd);
    void ranDry();
    void watchSource();
    void checkSource();
    void carryOutSeek();
    void handleSeekDone();
    [[nodiscard]] bool canSeek() const;
    void readDuration();
    void handle(GstMessage *message);
    void handlePrerolled();
    void handleError(GstMessage *message);
    void handleEnd();
    void reopen();
    void handleTracks(int count);
    [[nodiscard]] Time stored() const;
    [[nodiscard]] Time playedUntil() const;
    [[nodiscard]] bool isNetwork() const { return !m_config.uri.startsWith("file:"); }
    [[nodiscard]] QString describe(const GError &error, bool ofSource) const;
    [[nodiscard]] double queryPosition() const;

    // Streaming threads.
    static GstBusSyncReply onMessage(GstBus *bus, GstMessage *message, gpointer data);
    static void onPadAdded(GstElement *decoder, GstPad *pad, gpointer data);
    static void onNoMorePads(GstElement *decoder, gpointer data);
    static int onAutoplugSelect(GstElement *decoder, GstPad *pad, GstCaps *caps, GstElementFactory *factory,
                                gpointer data);
    static GstPadProbeReturn onSourceOutput(GstPad *pad, GstPadProbeInfo *info, gpointer data);
    static GstPadProbeReturn onStoreInput(GstPad *pad, GstPadProbeInfo *info, gpointer data);
    void bufferStored(GstBuffer *buffer);
    void soundOrEndStored();
    void eventStored(GstEvent *event);

    const Config m_config;
    std::mutex m_listenerMutex;
    Listener m_listener;
    SerialThread m_thread;

    // Written on the pipeline's thread, under the mutex.
    mutable std::mutex m_pipelineMutex;
    GstPtr<GstElement> m_pipeline;
    Start m_start;

    // The pipeline's thread. The elements belong to the pipeline; they are set before it starts.
    GstElement *m_source = nullptr;
    GstElement *m_entry = nullptr; // takes the decoded sound
    GstElement *m_store = nullptr;
    GstElement *m_gain = nullptr;
    GstState m_state = GST_STATE_NULL;
    float m_volume;
    bool m_wanted = false;
    bool m_opened = false; // has prerolled once
    bool m_prerolled = false;
    bool m_filled = false;
    bool m_over = false; // ended, until a seek
    bool m_failed = false;
    int m_turn = 0; // counts the fillings
    Clock::time_point m_fillingSince;
    bool m_seekRefused = false;
    std::optional<Seek> m_pendingSeek;
    std::optional<Seek> m_runningSeek;
    std::optional<QString> m_sourceError; // told when the store has been played

    // Shared with the streaming threads.
    std::atomic_int m_generation = 0;  // of the pipeline: tells late messages of an earlier one
    std::atomic_int m_fillingTurn = 0; // 0: nobody waits for the store
    std::atomic<Time> m_target{};
    std::atomic_bool m_endStored = false;
    std::atomic_bool m_flushed = false; // nothing was stored since
    std::atomic<Time> m_storedUntil{};  // running time at which the store ends
    std::atomic_int m_audioPads = 0;
    std::atomic<Clock::time_point> m_lastArrival{}; // the clock's zero: nothing has come

    GstSegment m_segment{}; // streaming thread
};

} // namespace navorin
