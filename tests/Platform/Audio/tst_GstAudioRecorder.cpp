#include "Platform/Audio/GstAudioRecorder.h"
#include "Platform/Tasks/QtMainQueue.h"
#include "Support/Columns.h"
#include "TestMedia.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Where it is not the patience that is tried: the first recording loads what it needs.
constexpr auto busyMachine = 20s;

} // namespace

class tst_GstAudioRecorder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void records_data();
    void records();
    void refused();
    void replacesAFile();

private:
    using Recording = std::shared_ptr<AudioRecording>;

    [[nodiscard]] QString path() const { return m_folder.filePath(u"a snippet.m4a"_s); }
    static Recording begin(GstAudioRecorder &recorder, const QString &path)
    {
        const auto beginning = recorder.record(path, RecordingSettings());
        return QTest::qWaitFor([&] { return beginning.isFinished(); }) ? beginning.result() : Recording();
    }

    QTemporaryDir m_folder;
    QtMainQueue m_queue;
};

void tst_GstAudioRecorder::records_data()
{
    addColumns<QByteArray, double>("source", "seconds");
    // Not live ones, so that seconds of sound need no seconds.
    const QByteArray tone = "audiotestsrc samplesperbuffer=1024 num-buffers=";
    QTest::newRow("four and a half seconds") << QByteArray(tone + "194") << 4.5;
    QTest::newRow("two channels of 48 kHz")
        << QByteArray(tone + "94 ! capsfilter caps=audio/x-raw,rate=48000,channels=2,format=F32LE") << 2.0;
    QTest::newRow("silence") << QByteArray("audiotestsrc wave=silence samplesperbuffer=1024 num-buffers=43")
                             << 1.0;
    QTest::newRow("a device that goes away") << QByteArray(tone + "999 ! identity error-after=44") << 1.0;
}

void tst_GstAudioRecorder::records()
{
    const auto [source, seconds] = fetched<QByteArray, double>("source", "seconds");
    GstAudioRecorder recorder(m_queue, {.source = source, .patience = busyMachine});
    const auto permission = recorder.requestPermission();
    QTRY_VERIFY_WITH_TIMEOUT(permission.isFinished(), 20000);
    QVERIFY(permission.result());
    const auto recording = begin(recorder, path());
    QVERIFY(recording);
    // Until all of it has been encoded: what is written then stands still.
    qint64 before = -1;
    QTRY_VERIFY_WITH_TIMEOUT(
        std::exchange(before, QFileInfo(path()).size()) == QFileInfo(path()).size() && before > 1000, 20000);
    const auto stopped = recording->stop();
    QTRY_VERIFY_WITH_TIMEOUT(stopped.isFinished(), 20000);
    const auto track = probedStreams(path()).at(0).toObject();
    QCOMPARE(track["codec_name"_L1], u"aac"_s);
    QCOMPARE(track["sample_rate"_L1], u"44100"_s);
    QCOMPARE(track["channels"_L1], 1);
    const auto length = track["duration"_L1].toString();
    QVERIFY2(std::abs(length.toDouble() - seconds) < 0.1, qPrintable(length));
    QVERIFY(QFileInfo(path()).size() > qint64(seconds * 15'000)); // 128 kbit/s
}

void tst_GstAudioRecorder::refused()
{
    for (const auto &source : {"pulsesrc server=unix:/nonexistent"_ba, "nonsensesrc"_ba,
                               "appsrc is-live=true format=time"_ba, // never a sound
                               "audiotestsrc num-buffers=0"_ba}) {   // an end without a beginning
        GstAudioRecorder recorder(m_queue, {.source = source, .patience = 300ms});
        QFile::remove(path());
        const auto permission = recorder.requestPermission();
        QTRY_VERIFY_WITH_TIMEOUT(permission.isFinished(), 1000);
        QVERIFY2(!permission.result(), source.constData());
        QVERIFY2(!begin(recorder, path()), source.constData());
        QTRY_VERIFY(!QFile::exists(path()));
    }
}

/// A recording that was given up may still be writing where the next one begins.
void tst_GstAudioRecorder::replacesAFile()
{
    GstAudioRecorder recorder(m_queue, {.source = "audiotestsrc num-buffers=100 samplesperbuffer=1024"_ba,
                                        .patience = busyMachine});
    auto givenUp = begin(recorder, path());
    QVERIFY(givenUp);
    const auto recording = begin(recorder, path());
    QVERIFY(recording);
    givenUp.reset();
    const auto stopped = recording->stop();
    QTRY_VERIFY_WITH_TIMEOUT(stopped.isFinished(), 20000);
    QCOMPARE(probedStreams(path()).size(), 1);
    QVERIFY(!begin(recorder, m_folder.filePath(u"no/folder.m4a"_s)));
}

QTEST_GUILESS_MAIN(tst_GstAudioRecorder)
#include "tst_GstAudioRecorder.moc"
