#include "Platform/Audio/GstAudioRecorder.h"

#include "Platform/Audio/GstAudioSource.h"
#include "Platform/Audio/GstPointers.h"
#include "Platform/Audio/GstRuntime.h"
#include "Platform/Audio/SerialThread.h"
#include "Platform/Audio/ThreadGroup.h"

#include <QDebug>
#include <QFile>
#include <QPromise>

#include <atomic>
#include <utility>

namespace navorin {

using namespace std::chrono_literals;

namespace {

constexpr auto completionLimit = 2s;

GstClockTime clockTime(std::chrono::nanoseconds time)
{
    return GstClockTime(time.count());
}

/// The desktop's microphone into a chain of elements. On one thread, except that everything may be destroyed
/// on another once that has let go.
class Capture
{
public:
    ~Capture()
    {
        if (m_pipeline)
            gst_element_set_state(m_pipeline.get(), GST_STATE_NULL);
    }

    /// `chain` as on a gst-launch line, with a first element that is called "entry".
    bool make(const QByteArray &source, const QByteArray &chain)
    {
        initialiseGStreamer();
        GError *error = nullptr;
        m_pipeline.reset(
            gst_parse_launch_full(chain.constData(), nullptr, GST_PARSE_FLAG_FATAL_ERRORS, &error));
        const GstPtr<GError> reason(error);
        if (!m_pipeline) {
            qWarning() << "[Audio] cannot record:" << (reason ? reason->message : "no reason given");
            return false;
        }
        m_bus.reset(gst_element_get_bus(m_pipeline.get()));
        m_entry = element("entry");
        m_source = makeAudioSource(source);
        return m_source && gst_bin_add(GST_BIN(m_pipeline.get()), m_source) &&
               gst_element_link(m_source, m_entry.get());
    }

    /// Into the element "file".
    void writeTo(const QString &path) const
    {
        const auto file = element("file");
        g_object_set(file.get(), "location", QFile::encodeName(path).constData(), nullptr);
    }

    /// Starts and waits for sound; false if none came within `patience`.
    bool begin(std::chrono::milliseconds patience)
    {
        const GstPtr<GstPad> pad(gst_element_get_static_pad(m_entry.get(), "sink"));
        gst_pad_add_probe(pad.get(), GST_PAD_PROBE_TYPE_BUFFER, &Capture::soundArrived, m_bus.get(), nullptr);
        if (gst_element_set_state(m_pipeline.get(), GST_STATE_PLAYING) == GST_STATE_CHANGE_FAILURE)
            return false;
        const auto message = waitFor(GST_MESSAGE_APPLICATION | GST_MESSAGE_ERROR | GST_MESSAGE_EOS, patience);
        return message && GST_MESSAGE_TYPE(message.get()) == GST_MESSAGE_APPLICATION;
    }

    /// Lets what was heard run through to the end, whether or not the microphone is still there.
    void complete()
    {
        const GstPtr<GstPad> pad(gst_element_get_static_pad(m_entry.get(), "sink"));
        gst_pad_send_event(pad.get(), gst_event_new_eos());
        while (const auto message = waitFor(GST_MESSAGE_ERROR | GST_MESSAGE_EOS, completionLimit)) {
            if (GST_MESSAGE_TYPE(message.get()) == GST_MESSAGE_EOS || !isOfSource(message.get()))
                break;
        }
        gst_element_set_state(m_pipeline.get(), GST_STATE_NULL);
    }

private:
    static GstPadProbeReturn soundArrived(GstPad *pad, GstPadProbeInfo *, gpointer bus)
    {
        gst_bus_post(GST_BUS(bus),
                     gst_message_new_application(GST_OBJECT(pad), gst_structure_new_empty("sound")));
        return GST_PAD_PROBE_REMOVE;
    }

    [[nodiscard]] GstPtr<GstElement> element(const char *name) const
    {
        return GstPtr<GstElement>(gst_bin_get_by_name(GST_BIN(m_pipeline.get()), name));
    }
    [[nodiscard]] GstPtr<GstMessage> waitFor(int types, std::chrono::milliseconds limit) const
    {
        return GstPtr<GstMessage>(
            gst_bus_timed_pop_filtered(m_bus.get(), clockTime(limit), GstMessageType(types)));
    }
    [[nodiscard]] bool isOfSource(GstMessage *message) const
    {
        return gst_object_has_as_ancestor(GST_MESSAGE_SRC(message), GST_OBJECT(m_source));
    }

    GstPtr<GstElement> m_pipeline;
    GstPtr<GstBus> m_bus;
    GstPtr<GstElement> m_entry;
    GstElement *m_source = nullptr; ///< the pipeline's
};

/// Gives a future its one value: what is said first, or the default if nobody says anything.
template <typename T>
class FirstAnswer
{
public:
    FirstAnswer() { m_promise.start(); }
    ~FirstAnswer() { give(T()); }
    Q_DISABLE_COPY_MOVE(FirstAnswer)

    /// False if it came too late.
    bool give(T answer)
    {
        if (m_given.exchange(true))
            return false;
        m_promise.addResult(std::move(answer));
        m_promise.finish();
        return true;
    }
    [[nodiscard]] QFuture<T> future() const { return m_promise.future(); }

private:
    QPromise<T> m_promise;
    std::atomic_bool m_given = false;
};

/// Connecting to a sound server that hangs has no time limit of its own.
template <typename T>
QFuture<T> answerWithin(const std::shared_ptr<FirstAnswer<T>> &answer, std::chrono::milliseconds limit,
                        MainQueue &queue)
{
    // Weakly: what was answered is not to live as long as the limit.
    queue.sleep(limit).then([weak = std::weak_ptr(answer)] {
        if (const auto waiting = weak.lock())
            waiting->give(T());
    });
    return answer->future();
}

bool canHear(const GstAudioRecorder::Options &options)
{
    Capture capture;
    return capture.make(options.source, "identity name=entry ! fakesink sync=false async=false") &&
           capture.begin(options.patience);
}

QByteArray encoderChain(const RecordingSettings &settings)
{
    const QByteArray caps = "audio/x-raw,rate=" + QByteArray::number(settings.sampleRate) +
                            ",channels=" + QByteArray::number(settings.channels);
    return "queue name=entry max-size-buffers=0 max-size-bytes=0 max-size-time=10000000000 ! audioconvert ! "
           "audioresample ! " +
           caps + " ! voaacenc bitrate=" + QByteArray::number(settings.bitRate) +
           " ! aacparse ! mp4mux ! filesink name=file sync=false async=false";
}

class GstAudioRecording final : public AudioRecording
{
public:
    GstAudioRecording(std::shared_ptr<SerialThread> thread, std::shared_ptr<Capture> capture)
        : m_thread(std::move(thread))
        , m_capture(std::move(capture))
    {
    }
    ~GstAudioRecording() override
    {
        m_thread->finish([capture = std::move(m_capture)]() mutable { capture.reset(); });
    }

    [[nodiscard]] QFuture<void> stop() override
    {
        auto promise = std::make_shared<QPromise<void>>();
        promise->start();
        m_thread->finish([capture = std::exchange(m_capture, nullptr), promise] {
            if (capture)
                capture->complete();
            promise->finish();
        });
        return promise->future();
    }

private:
    std::shared_ptr<SerialThread> m_thread;
    std::shared_ptr<Capture> m_capture;
};

/// On `thread`; null if no sound comes.
std::shared_ptr<AudioRecording> begun(const std::shared_ptr<SerialThread> &thread, const QString &path,
                                      const RecordingSettings &settings,
                                      const GstAudioRecorder::Options &options)
{
    auto capture = std::make_shared<Capture>();
    if (!capture->make(options.source, encoderChain(settings)))
        return nullptr;
    capture->writeTo(path);
    if (!capture->begin(options.patience))
        return nullptr;
    return std::make_shared<GstAudioRecording>(thread, std::move(capture));
}

} // namespace

GstAudioRecorder::Options GstAudioRecorder::Options::fromEnvironment()
{
    return {.source = qgetenv("NAVORIN_AUDIO_SOURCE")};
}

GstAudioRecorder::GstAudioRecorder(MainQueue &queue, Options options)
    : m_queue(queue)
    , m_options(std::move(options))
    , m_threads(std::make_shared<ThreadGroup>())
{
}

GstAudioRecorder::~GstAudioRecorder()
{
    if (!m_threads->wait(3s))
        qWarning() << "[Audio] the microphone does not let go; left behind";
}

QFuture<bool> GstAudioRecorder::requestPermission()
{
    const auto answer = std::make_shared<FirstAnswer<bool>>();
    m_threads->start([answer, options = m_options] { answer->give(canHear(options)); });
    return answerWithin(answer, m_options.patience, m_queue);
}

QFuture<std::shared_ptr<AudioRecording>> GstAudioRecorder::record(const QString &path,
                                                                  const RecordingSettings &settings)
{
    using Recording = std::shared_ptr<AudioRecording>;
    const auto answer = std::make_shared<FirstAnswer<Recording>>();
    auto thread = std::make_shared<SerialThread>(*m_threads);
    thread->post([thread, answer, path, settings, options = m_options] {
        // Another recording may still be writing into a file of that name.
        QFile::remove(path);
        const auto recording = begun(thread, path, settings, options);
        if (!answer->give(recording) || !recording)
            QFile::remove(path);
    });
    return answerWithin(answer, m_options.patience, m_queue);
}

} // namespace navorin
