#include "Platform/Audio/GstMediaPlayer.h"
#include "Platform/Audio/TestMedia.h"
#include "Platform/Storage/QtFileStore.h"
#include "Platform/Tasks/Detached.h"
#include "Platform/Tasks/QtMainQueue.h"
#include "Services/Backend/APIClient.h"
#include "Services/Equaliser/EqSnapshotStore.h"
#include "Services/Equaliser/Equalizer.h"
#include "Services/Offline/OfflineStore.h"
#include "Services/Playback/RadioPlayer.h"
#include "Support/FakeDesktop.h"
#include "Support/FakeHttpSession.h"
#include "Support/FakeUserDefaults.h"
#include "Support/TestAccess.h"

#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <numbers>
#include <span>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int sampleRate = 48000;
constexpr int seconds = 4;
constexpr double amplitude = 0.1;

double rms(std::span<const float> samples)
{
    double sum = 0;
    for (const auto sample : samples)
        sum += double(sample) * double(sample);
    return std::sqrt(sum / double(samples.size()));
}

} // namespace

/// The whole path of the sound, from a selected station to the sink, with the equaliser saved as on or off.
class tst_EqualiserInPipeline : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void boostsTheToneByItsGain();
    void offIsBitIdentical();
    void silentUntilItsModelIsBuilt();

private:
    /// What comes out when the tone is played; `saved` is the equaliser of an earlier run, if its model is
    /// built.
    QByteArray played(const std::optional<QVariantList> &savedGains, bool savedOn);

    MediaFolder m_folder;
    QByteArray m_tone; ///< its samples
};

void tst_EqualiserInPipeline::initTestCase()
{
    qputenv("XDG_DATA_HOME", m_folder.path("").toUtf8());
    // samples that the pipeline needs no conversion for
    QCOMPARE(runPipeline(u"audiotestsrc freq=1000 volume=%1 samplesperbuffer=%2 num-buffers=%3 ! "
                         "audio/x-raw,format=F32LE,rate=%2,channels=2 ! wavenc ! filesink location=%4"_s
                             .arg(amplitude)
                             .arg(sampleRate)
                             .arg(seconds)
                             .arg(m_folder.path("tone.wav"))),
             QString());
    m_tone = m_folder.contents("tone.wav").sliced(44, sampleRate * seconds * 8);
}

QByteArray tst_EqualiserInPipeline::played(const std::optional<QVariantList> &savedGains, bool savedOn)
{
    eqSnapshotStore().write(false, {});
    QtMainQueue queue;
    QtFileStore files;
    FakeHttpSession http;
    FakeUserDefaults defaults;
    defaults.setBool(u"eq.enabled"_s, savedOn);
    defaults.setObject(u"eq.gains"_s, savedGains.value_or(QVariantList()));
    GstMediaPlayer engine(queue, {"filesink location="_ba + m_folder.path("out.raw").toUtf8()});
    auto client = TestAccess::make<APIClient>(QUrl(u"https://backend.test"_s), http);
    auto offline = TestAccess::makeIn<OfflineStore>(files, queue, http, *client);
    FakeDesktop desktop;
    auto player = TestAccess::makeIn<RadioPlayer>(engine, desktop.audioSession, desktop.nowPlaying,
                                                  desktop.remoteCommands, queue, *client, *offline);
    player->setVolume(1);
    const auto model = savedGains ? TestAccess::make<Equalizer>(defaults) : nullptr;

    QSignalSpy ended(&engine, &MediaPlayer::itemDidPlayToEnd);
    Station station;
    station.genre = u"tone"_s;
    station.streamURL = m_folder.file("tone.wav").toString();
    detach(player->selectStation(station), "test");
    if (!ended.wait(30000))
        qWarning("the tone did not come to its end");
    engine.replaceCurrentItem(nullptr);
    while (!http.exchanges.empty())
        http.take().fail();
    QTest::qWait(0);
    player.reset();
    return m_folder.contents("out.raw");
}

void tst_EqualiserInPipeline::boostsTheToneByItsGain()
{
    const auto output = played(QVariantList{0, 0, 12, 0, 0}, true);
    const auto samples = floats(output);
    QVERIFY(samples.size() > sampleRate * 2U);
    const auto settled = samples.last(std::size_t(sampleRate)); // half a second, long after the tap was bound
    const auto gain = 20 * std::log10(rms(settled) / (amplitude / std::numbers::sqrt2));
    QVERIFY2(std::abs(gain - 12) <= 0.5, qPrintable(QString::number(gain)));
}

void tst_EqualiserInPipeline::offIsBitIdentical()
{
    QVERIFY(played(QVariantList{0, 0, 12, 0, 0}, false) == m_tone);
}

void tst_EqualiserInPipeline::silentUntilItsModelIsBuilt()
{
    QVERIFY(played({}, true) == m_tone);
}

QTEST_GUILESS_MAIN(tst_EqualiserInPipeline)
#include "tst_EqualiserInPipeline.moc"
