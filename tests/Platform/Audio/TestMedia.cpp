#include "TestMedia.h"

#include "Platform/Audio/GstPointers.h"
#include "Platform/Audio/GstRuntime.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>

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

/// Not with QProcess, whose way to fork leaves the thread sanitizer at a loss.
QJsonArray probedStreams(const QString &path)
{
    const QByteArray command =
        "ffprobe -v error -count_frames -show_streams -of json '" + QFile::encodeName(path) + "'";
    auto *probe = popen(command.constData(), "r");
    if (!probe)
        return {};
    QFile output;
    const auto told = output.open(probe, QIODevice::ReadOnly) ? output.readAll() : QByteArray();
    pclose(probe);
    return QJsonDocument::fromJson(told).object().value(u"streams"_s).toArray();
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
