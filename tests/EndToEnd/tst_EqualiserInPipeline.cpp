#include "Platform/Audio/GstMediaPlayer.h"
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

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

#include <cmath>
#include <numbers>
#include <span>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

struct navorin::TestAccess
{
    static std::unique_ptr<APIClient> makeClient(const QUrl &base, HttpSession &session)
    {
        return std::unique_ptr<APIClient>(new APIClient(base, session));
    }
    static std::unique_ptr<OfflineStore> makeOffline(FileStore &files, MainQueue &queue, HttpSession &session,
                                                     const APIClient &client)
    {
        return std::unique_ptr<OfflineStore>(new OfflineStore({files, queue, session, client}));
    }
    static std::unique_ptr<RadioPlayer> makePlayer(MediaPlayer &engine, FakeDesktop &desktop,
                                                   MainQueue &queue, APIClient &client, OfflineStore &offline)
    {
        return std::unique_ptr<RadioPlayer>(
            new RadioPlayer({engine, desktop.audioSession, desktop.nowPlaying, desktop.remoteCommands, queue,
                             client, offline}));
    }
    static std::unique_ptr<Equalizer> makeEqualizer(UserDefaults &defaults)
    {
        return std::unique_ptr<Equalizer>(new Equalizer(defaults));
    }
};

namespace {

constexpr int sampleRate = 48000;
constexpr int seconds = 4;
constexpr double amplitude = 0.1;

/// A stereo WAV file of 32-bit float samples, a tone of 1 kHz: what the pipeline needs no conversion for.
QByteArray toneFile()
{
    QByteArray samples;
    for (int i = 0; i < sampleRate * seconds; ++i) {
        const auto value = float(amplitude * std::sin(2 * std::numbers::pi * 1000 * i / sampleRate));
        for (int channel = 0; channel < 2; ++channel)
            samples.append(reinterpret_cast<const char *>(&value), sizeof value);
    }
    QByteArray header;
    const auto word = [&header](auto value) {
        const auto little = qToLittleEndian(value);
        header.append(reinterpret_cast<const char *>(&little), sizeof little);
    };
    header.append("RIFF");
    word(quint32(36 + samples.size()));
    header.append("WAVEfmt ");
    word(quint32(16));
    word(quint16(3)); // IEEE float
    word(quint16(2));
    word(quint32(sampleRate));
    word(quint32(sampleRate * 8));
    word(quint16(8));
    word(quint16(32));
    header.append("data");
    word(quint32(samples.size()));
    return header + samples;
}

std::span<const float> floats(const QByteArray &bytes)
{
    return {reinterpret_cast<const float *>(bytes.constData()), std::size_t(bytes.size()) / sizeof(float)};
}

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

    QTemporaryDir m_folder;
};

void tst_EqualiserInPipeline::initTestCase()
{
    qputenv("XDG_DATA_HOME", m_folder.path().toUtf8());
    QVERIFY(QtFileStore().writeAtomically(m_folder.filePath(u"tone.wav"_s), toneFile()));
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
    const auto output = m_folder.filePath(u"out.raw"_s);
    GstMediaPlayer engine(queue, {"filesink location="_ba + output.toUtf8()});
    auto client = TestAccess::makeClient(QUrl(u"https://backend.test"_s), http);
    auto offline = TestAccess::makeOffline(files, queue, http, *client);
    FakeDesktop desktop;
    auto player = TestAccess::makePlayer(engine, desktop, queue, *client, *offline);
    player->setVolume(1);
    const auto model = savedGains ? TestAccess::makeEqualizer(defaults) : nullptr;

    QSignalSpy ended(&engine, &MediaPlayer::itemDidPlayToEnd);
    Station station;
    station.genre = u"tone"_s;
    station.streamURL = QUrl::fromLocalFile(m_folder.filePath(u"tone.wav"_s)).toString();
    detach(player->selectStation(station), "test");
    if (!ended.wait(30000))
        qWarning("the tone did not come to its end");
    engine.replaceCurrentItem(nullptr);
    while (!http.exchanges.empty())
        http.take().fail();
    QTest::qWait(0);
    player.reset();
    return files.read(output).value_or(QByteArray());
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
    const auto output = played(QVariantList{0, 0, 12, 0, 0}, false);
    QVERIFY(output == toneFile().sliced(44));
}

void tst_EqualiserInPipeline::silentUntilItsModelIsBuilt()
{
    QVERIFY(played({}, true) == toneFile().sliced(44));
}

QTEST_GUILESS_MAIN(tst_EqualiserInPipeline)
#include "tst_EqualiserInPipeline.moc"
