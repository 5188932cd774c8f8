#include "TestMedia.h"

#include "Platform/Audio/GstPointers.h"
#include "Platform/Audio/GstRuntime.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

QString runPipeline(const QString &description)
{
    initialiseGStreamer();
    GError *error = nullptr;
    const GstPtr<GstElement> pipeline(gst_parse_launch(description.toUtf8().constData(), &error));
    if (error)
        return QString::fromUtf8(GstPtr<GError>(error)->message);
    gst_element_set_state(pipeline.get(), GST_STATE_PLAYING);
    const GstPtr<GstBus> bus(gst_element_get_bus(pipeline.get()));
    const GstPtr<GstMessage> message(gst_bus_timed_pop_filtered(
        bus.get(), 20 * GST_SECOND, GstMessageType(GST_MESSAGE_EOS | GST_MESSAGE_ERROR)));
    gst_element_set_state(pipeline.get(), GST_STATE_NULL);
    if (!message)
        return u"it does not end"_s;
    if (GST_MESSAGE_TYPE(message.get()) == GST_MESSAGE_EOS)
        return {};
    gst_message_parse_error(message.get(), &error, nullptr);
    return QString::fromUtf8(GstPtr<GError>(error)->message);
}

QJsonArray probedStreams(const QString &path)
{
    QProcess probe;
    probe.start(u"ffprobe"_s,
                {u"-v"_s, u"error"_s, u"-count_frames"_s, u"-show_streams"_s, u"-of"_s, u"json"_s, path});
    if (!probe.waitForFinished(60000))
        return {};
    return QJsonDocument::fromJson(probe.readAllStandardOutput()).object().value(u"streams"_s).toArray();
}

QString MediaFolder::writeTone(const char *name, double seconds, double silence) const
{
    const auto source = [](const QString &kind, double length) {
        return u" audiotestsrc %1 samplesperbuffer=441 num-buffers=%2 ! audio/x-raw,rate=44100,channels=2 ! all."_s
            .arg(kind)
            .arg(int(length * 100));
    };
    static const QHash<QString, QString> encoders = {
        {u"wav"_s, u"wavenc"_s},
        {u"mp3"_s, u"lamemp3enc target=bitrate bitrate=128 cbr=true ! xingmux"_s},
        {u"aac"_s, u"avenc_aac bitrate=128000 ! aacparse ! audio/mpeg,stream-format=adts"_s},
        {u"m4a"_s, u"avenc_aac bitrate=128000 ! mp4mux"_s},
        {u"ogg"_s, u"vorbisenc ! oggmux"_s},
    };
    return runPipeline(
        u"concat name=all ! identity single-segment=true ! audioconvert ! %1 ! filesink location=%2"_s.arg(
            encoders.value(QFileInfo(path(name)).suffix()), path(name)) +
        (silence > 0 ? source(u"wave=silence"_s, silence) : QString()) +
        source(u"volume=0.5 freq=1000"_s, seconds));
}

QByteArray MediaFolder::contents(const char *name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace navorin
