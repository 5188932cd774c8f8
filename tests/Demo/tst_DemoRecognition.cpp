#include "DemoProcess.h"
#include "Platform/Audio/TestMedia.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int mp3BytesPerSecond = 16'000; // 128 kbit/s

} // namespace

/// What the demo backend knows its own music by.
class TestDemoRecognition : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_backend = std::make_unique<DemoProcess>(QStringList{u"--database"_s, u":memory:"_s});
        QVERIFY(m_backend->port() > 0);
    }

    void recognises();
    void refuses();

private:
    /// As the client would record it: mono AAC of what `source` gives, softer.
    QByteArray snippet(const QByteArray &source)
    {
        const auto fault =
            runPipeline(QString::fromUtf8(source) +
                        u" ! audioconvert ! audioresample ! volume volume=0.2 ! "
                        "audio/x-raw,rate=44100,channels=1 ! voaacenc bitrate=128000 ! aacparse ! mp4mux ! "
                        "filesink location="_s +
                        m_folder.path("snippet.m4a"));
        return fault.isEmpty() ? m_folder.contents("snippet.m4a") : QByteArray();
    }
    /// The sound of part of a track.
    QByteArray partOf(const QByteArray &mp3, double start, double seconds)
    {
        QFile file(m_folder.path("part.mp3"));
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

    MediaFolder m_folder;
    std::unique_ptr<DemoProcess> m_backend;
};

/// Names the song that was asked for, though others share its music.
void TestDemoRecognition::recognises()
{
    for (const auto &[stream, start] : {std::pair(u"/stream/kavir?track=3"_s, 0.0),
                                        {u"/stream/kavir?track=9"_s, 20.337}, // between two frames
                                        {u"/stream/yalda?track=2"_s, 10.0}, // the same music as another song
                                        {u"/stream/highway?track=1"_s, 30.0}}) { // the end
        const auto mp3 = m_backend->fetch(stream)->readAll();
        int status = 0;
        const auto song = ask(snippet(partOf(mp3, start, 4.5)), &status)["data"_L1].toObject();
        QCOMPARE(status, 200);
        QCOMPARE(song["stream_url"_L1].toString(), stream);
        QVERIFY(!song["title"_L1].toString().isEmpty() && song["duration"_L1].toInt() > 0);
        const auto artwork = m_backend->fetch(song["artwork_url"_L1].toString(), "HEAD");
        QCOMPARE(artwork->error(), QNetworkReply::NoError);
    }
}

void TestDemoRecognition::refuses()
{
    const auto soundOf = [this](const QByteArray &what) {
        return snippet("audiotestsrc samplesperbuffer=1024 num-buffers=194 wave=" + what);
    };
    for (const auto &[body, expected] : {std::pair(soundOf("pink-noise"), 404),
                                         {soundOf("sine"), 404},
                                         {soundOf("silence"), 404},
                                         {"not a file"_ba, 400},
                                         {""_ba, 400}}) {
        int status = 0;
        const auto answer = ask(body, &status);
        QCOMPARE(status, expected);
        QVERIFY(!answer["message"_L1].toString().isEmpty() && !answer.contains("data"_L1));
    }
}

QTEST_GUILESS_MAIN(TestDemoRecognition)
#include "tst_DemoRecognition.moc"
