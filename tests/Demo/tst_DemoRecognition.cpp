#include "DemoProcess.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <gst/gst.h>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int mp3BytesPerSecond = 16'000; // 128 kbit/s

/// Runs a pipeline, as on a gst-launch line, to its end.
bool run(const QByteArray &line)
{
    GstElement *const pipeline = gst_parse_launch(line.constData(), nullptr);
    gst_element_set_state(pipeline, GST_STATE_PLAYING);
    GstBus *const bus = gst_element_get_bus(pipeline);
    GstMessage *const message =
        gst_bus_timed_pop_filtered(bus, 20 * GST_SECOND, GstMessageType(GST_MESSAGE_EOS | GST_MESSAGE_ERROR));
    const bool done = message != nullptr && GST_MESSAGE_TYPE(message) == GST_MESSAGE_EOS;
    if (message != nullptr)
        gst_message_unref(message);
    gst_object_unref(bus);
    gst_element_set_state(pipeline, GST_STATE_NULL);
    gst_object_unref(pipeline);
    return done;
}

} // namespace

/// What the demo backend knows its own music by.
class TestDemoRecognition : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        gst_init(nullptr, nullptr);
        m_backend = std::make_unique<DemoProcess>(QStringList{u"--database"_s, u":memory:"_s});
        QVERIFY(m_backend->port() > 0);
    }

    void recognises_data();
    void recognises();
    void refuses_data();
    void refuses();

private:
    /// As the client would record it: mono AAC of what `source` gives, softer.
    QByteArray snippet(const QByteArray &source)
    {
        const auto path = m_folder.filePath(u"snippet.m4a"_s);
        if (!run(source +
                 " ! audioconvert ! audioresample ! volume volume=0.2 ! "
                 "audio/x-raw,rate=44100,channels=1 ! voaacenc bitrate=128000 ! aacparse ! mp4mux ! "
                 "filesink location=" +
                 path.toUtf8()))
            return {};
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    /// The sound of part of a track.
    QByteArray partOf(const QByteArray &mp3, double start, double seconds)
    {
        QFile file(m_folder.filePath(u"part.mp3"_s));
        if (file.open(QIODevice::WriteOnly))
            file.write(mp3.mid(qsizetype(start * mp3BytesPerSecond), qsizetype(seconds * mp3BytesPerSecond)));
        return "filesrc location=" + file.fileName().toUtf8() + " ! mpegaudioparse ! mpg123audiodec";
    }
    QJsonObject ask(const QByteArray &body, int *status)
    {
        const auto reply = m_backend->fetch(u"/api/shazam"_s, "POST", {{"Content-Type", "audio/mp4"}}, body);
        *status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        return QJsonDocument::fromJson(reply->readAll()).object();
    }

    QTemporaryDir m_folder;
    std::unique_ptr<DemoProcess> m_backend;
};

void TestDemoRecognition::recognises_data()
{
    QTest::addColumn<QString>("stream");
    QTest::addColumn<double>("start");
    QTest::newRow("the beginning") << u"/stream/kavir?track=3"_s << 0.0;
    QTest::newRow("between two frames") << u"/stream/kavir?track=9"_s << 20.337;
    QTest::newRow("the same music as another song") << u"/stream/yalda?track=2"_s << 10.0;
    QTest::newRow("the end") << u"/stream/highway?track=1"_s << 30.0;
}

/// Names the song that was asked for, though others share its music.
void TestDemoRecognition::recognises()
{
    QFETCH(QString, stream);
    QFETCH(double, start);
    const auto mp3 = m_backend->fetch(stream)->readAll();
    int status = 0;
    const auto song = ask(snippet(partOf(mp3, start, 4.5)), &status)["data"_L1].toObject();
    QCOMPARE(status, 200);
    QCOMPARE(song["stream_url"_L1].toString(), stream);
    QVERIFY(!song["title"_L1].toString().isEmpty() && song["duration"_L1].toInt() > 0);
    const auto artwork = m_backend->fetch(song["artwork_url"_L1].toString(), "HEAD");
    QCOMPARE(artwork->error(), QNetworkReply::NoError);
}

void TestDemoRecognition::refuses_data()
{
    QTest::addColumn<QByteArray>("source"); // of a snippet; or else, after "=", the body itself
    QTest::addColumn<int>("status");
    QTest::newRow("noise") << "audiotestsrc wave=pink-noise num-buffers=194"_ba << 404;
    QTest::newRow("a tone") << "audiotestsrc num-buffers=194"_ba << 404;
    QTest::newRow("silence") << "audiotestsrc wave=silence num-buffers=194"_ba << 404;
    QTest::newRow("garbage") << "=not a file"_ba << 400;
    QTest::newRow("nothing") << "="_ba << 400;
}

void TestDemoRecognition::refuses()
{
    QFETCH(QByteArray, source);
    int status = 0;
    const auto body = source.startsWith('=') ? source.mid(1) : snippet(source + " samplesperbuffer=1024");
    const auto answer = ask(body, &status);
    QTEST(status, "status");
    QVERIFY(!answer["message"_L1].toString().isEmpty() && !answer.contains("data"_L1));
}

QTEST_GUILESS_MAIN(TestDemoRecognition)
#include "tst_DemoRecognition.moc"
