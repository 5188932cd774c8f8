#include "Platform/Audio/GstAudioRecorder.h"
#include "Platform/Audio/GstPointers.h"
#include "Platform/Tasks/QtMainQueue.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <gst/gst.h>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Where it is not the patience that is tried: the first recording loads what it needs.
constexpr auto busyMachine = 20s;

/// What stands in a file's index about its one track.
struct Track
{
    QByteArray codec;
    int rate = 0;
    int channels = 0;
    double seconds = 0;
};

Track trackIn(const QString &path)
{
    const QByteArray line =
        "filesrc location=\"" + QFile::encodeName(path) + "\" ! qtdemux ! fakesink name=out sync=false";
    const GstPtr<GstElement> pipeline(gst_parse_launch(line.constData(), nullptr));
    gst_element_set_state(pipeline.get(), GST_STATE_PAUSED);
    if (gst_element_get_state(pipeline.get(), nullptr, nullptr, 5 * GST_SECOND) != GST_STATE_CHANGE_SUCCESS) {
        gst_element_set_state(pipeline.get(), GST_STATE_NULL);
        return {};
    }
    const GstPtr<GstElement> out(gst_bin_get_by_name(GST_BIN(pipeline.get()), "out"));
    const GstPtr<GstPad> pad(gst_element_get_static_pad(out.get(), "sink"));
    const GstPtr<GstCaps> caps(gst_pad_get_current_caps(pad.get()));
    const auto *form = gst_caps_get_structure(caps.get(), 0);
    Track track;
    track.codec = gst_structure_get_name(form);
    gst_structure_get_int(form, "rate", &track.rate);
    gst_structure_get_int(form, "channels", &track.channels);
    gint64 length = 0;
    gst_element_query_duration(pipeline.get(), GST_FORMAT_TIME, &length);
    track.seconds = double(length) / GST_SECOND;
    gst_element_set_state(pipeline.get(), GST_STATE_NULL);
    return track;
}

} // namespace

class tst_GstAudioRecorder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void records_data();
    void records();
    void refused_data();
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
    QTest::addColumn<QByteArray>("source");
    QTest::addColumn<double>("seconds");
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
    QFETCH(QByteArray, source);
    QFETCH(double, seconds);
    GstAudioRecorder recorder(m_queue, {.source = source, .patience = busyMachine});
    const auto permission = recorder.requestPermission();
    QTRY_VERIFY(permission.isFinished());
    QVERIFY(permission.result());
    const auto recording = begin(recorder, path());
    QVERIFY(recording);
    // Until all of it has been encoded: what is written then stands still.
    qint64 before = -1;
    QTRY_VERIFY(std::exchange(before, QFileInfo(path()).size()) == QFileInfo(path()).size() && before > 1000);
    const auto stopped = recording->stop();
    QTRY_VERIFY(stopped.isFinished());
    const auto track = trackIn(path());
    QCOMPARE(track.codec, "audio/mpeg"_ba);
    QCOMPARE(track.rate, 44'100);
    QCOMPARE(track.channels, 1);
    QVERIFY2(std::abs(track.seconds - seconds) < 0.1, QByteArray::number(track.seconds).constData());
    QVERIFY(QFileInfo(path()).size() > qint64(seconds * 15'000)); // 128 kbit/s
}

void tst_GstAudioRecorder::refused_data()
{
    QTest::addColumn<QByteArray>("source");
    QTest::newRow("no sound server") << "pulsesrc server=unix:/nonexistent"_ba;
    QTest::newRow("no such source") << "nonsensesrc"_ba;
    QTest::newRow("never a sound") << "appsrc is-live=true format=time"_ba;
    QTest::newRow("an end without a beginning") << "audiotestsrc num-buffers=0"_ba;
}

void tst_GstAudioRecorder::refused()
{
    QFETCH(QByteArray, source);
    GstAudioRecorder recorder(m_queue, {.source = source, .patience = 300ms});
    QFile::remove(path());
    const auto permission = recorder.requestPermission();
    QTRY_VERIFY_WITH_TIMEOUT(permission.isFinished(), 1000);
    QVERIFY(!permission.result());
    QVERIFY(!begin(recorder, path()));
    QTRY_VERIFY(!QFile::exists(path()));
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
    QTRY_VERIFY(stopped.isFinished());
    QVERIFY(trackIn(path()).seconds > 0);
    QVERIFY(!begin(recorder, m_folder.filePath(u"no/folder.m4a"_s)));
}

QTEST_GUILESS_MAIN(tst_GstAudioRecorder)
#include "tst_GstAudioRecorder.moc"
