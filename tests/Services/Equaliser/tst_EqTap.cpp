#include "Services/Equaliser/Ctx.h"
#include "Services/Equaliser/EqTap.h"

#include <QRegularExpression>
#include <QTemporaryFile>
#include <QTest>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <thread>
#include <unistd.h>

using namespace navorin;
using namespace navorin::EqTap;

namespace {

thread_local int allocations = 0;

} // namespace

void *operator new(std::size_t size)
{
    ++allocations;
    if (void *memory = std::malloc(size))
        return memory;
    throw std::bad_alloc();
}
void operator delete(void *memory) noexcept
{
    std::free(memory);
}
void operator delete(void *memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace {

constexpr EqGains loud{12, 12, 12, 12, 12};
constexpr quint32 startOfStream = AudioTap::flagStartOfStream;

AudioStreamDescription format(quint32 channels = 2, quint32 flags = AudioStreamDescription::flagIsFloat,
                              double rate = 44100)
{
    return {rate, flags, channels, 32};
}
constexpr quint32 planar = AudioStreamDescription::flagIsFloat | AudioStreamDescription::flagIsNonInterleaved;

/// The host of one tap: every buffer it gives is filled with one value.
struct Host : AudioTap::SourceAudio
{
    std::shared_ptr<AudioTap> tap = makeTap();
    AudioTap::SourceResult source;
    float value = 0.25F;
    std::vector<std::vector<float>> data;
    std::vector<AudioBuffer> buffers;

    /// `buffers` in the list, each of so many channels.
    explicit Host(std::size_t count = 1, quint32 channels = 2, std::size_t samples = 64)
        : data(count, std::vector<float>(samples))
    {
        for (auto &samplesOfBuffer : data)
            buffers.push_back({channels, quint32(samples * sizeof(float)), samplesOfBuffer.data()});
    }

    AudioTap::SourceResult pull(qint64 frames, AudioBufferList) override
    {
        for (auto &samples : data)
            std::ranges::fill(samples, value);
        return {source.status, source.frames ? source.frames : frames, source.flags};
    }
    AudioTap::ProcessResult process(qint64 frames = 32, quint32 flags = 0)
    {
        return tap->process(frames, flags, buffers, *this);
    }
    [[nodiscard]] Ctx &ctx() const { return *ctxStore().find(*tap); }
    /// How many of a buffer's samples are not what the source gave.
    [[nodiscard]] qsizetype changed(std::size_t buffer = 0) const
    {
        return std::ranges::count_if(data[buffer], [this](float sample) { return sample != value; });
    }
};

template <typename Work>
QByteArray printed(Work work)
{
    QTemporaryFile file;
    if (!file.open())
        return "no file";
    std::fflush(stdout);
    const int saved = ::dup(STDOUT_FILENO);
    ::dup2(file.handle(), STDOUT_FILENO);
    work();
    ::dup2(saved, STDOUT_FILENO);
    ::close(saved);
    file.seek(0);
    return file.readAll();
}

} // namespace

class tst_EqTap : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { eqSnapshotStore().write(true, loud); }
    void buildsKeepsAndEmptiesFilters();
    void bypasses();
    void mapsChannels();
    void leavesWhatItCannotFilter();
    void passesFlagsAndFaults();
    void printsLines();
    void processesWithoutAllocating();
    void seesWholeSettings();
};

void tst_EqTap::buildsKeepsAndEmptiesFilters()
{
    const auto fresh = makeCascade(loud, 44100);
    Host host;
    QVERIFY(host.ctx().applied.empty());
    host.tap->prepare(format());
    QCOMPARE(host.ctx().applied, std::vector{-1.0F});
    QVERIFY(host.ctx().cascades.empty());

    host.process();
    const auto remembered = host.ctx().cascades;
    QVERIFY(remembered.size() == 2 && remembered[0][4].y1 != 0);
    eqSnapshotStore().write(false, loud); // off keeps what they remember, a start of the stream does not
    host.process();
    QCOMPARE(host.ctx().cascades, remembered);
    host.source.flags = startOfStream;
    host.process();
    QCOMPARE(host.ctx().cascades, std::vector(2, fresh));

    host.source.flags = 0;
    eqSnapshotStore().write(true, loud);
    host.process();
    QVERIFY(host.ctx().cascades[1][4].y1 != 0);
    const EqGains other{12, 12, 12, 12, 11}; // one gain empties all, also while off
    eqSnapshotStore().write(false, other);
    host.process();
    QCOMPARE(host.ctx().cascades, std::vector(2, makeCascade(other, 44100)));

    host.tap->prepare(format(0, AudioStreamDescription::flagIsFloat, 48000));
    QVERIFY(host.ctx().cascades.empty());
    host.process();
    QCOMPARE(host.ctx().cascades, std::vector(1, makeCascade(other, 48000)));
    host.tap->unprepare();
    QVERIFY(host.ctx().cascades.empty());
    host.process(); // gains that were applied before are built again
    QCOMPARE(host.ctx().cascades.size(), 1U);
}

void tst_EqTap::bypasses()
{
    for (const auto &[on, flags, filters] : {std::tuple(true, format().formatFlags, true),
                                             {false, format().formatFlags, false},
                                             {true, 0U, false}}) {
        eqSnapshotStore().write(on, loud);
        Host host;
        host.tap->prepare(format(2, flags));
        host.process();
        QCOMPARE(host.changed(), filters ? 64 : 0);
        QCOMPARE(host.ctx().dbgCounter, filters ? 1 : 0);
        QCOMPARE(host.ctx().cascades.size(), 2U);
    }
}

void tst_EqTap::mapsChannels()
{
    const std::tuple<AudioStreamDescription, int, quint32, QList<int>> cases[]{
        // format, buffers, channels in each, and the cascade of each channel or buffer; -1: left
        {format(2), 1, 2U, {0, 1}},          // interleaved
        {format(2), 1, 3U, {0, 1, -1}},      // surplus position
        {format(1), 1, 0U, {0}},             // no count is one
        {format(2, planar), 2, 1U, {0, 1}},  // planar
        {format(2, planar), 2, 2U, {0, 1}},  // planar, two counted
        {format(1, planar), 2, 1U, {0, -1}}, // surplus buffer
    };
    for (const auto &[format, buffers, perBuffer, cascades] : cases) {
        const std::size_t stride = std::max(perBuffer, 1U);
        Host host(std::size_t(buffers), perBuffer, 32 * stride);
        host.tap->prepare(format);
        host.process(0); // builds; then each cascade is made to be told from the other
        for (std::size_t c = 0; c < host.ctx().cascades.size(); ++c)
            host.ctx().cascades[c] = {{{float(c) + 2}, {1}, {1}, {1}, {1}}};
        host.process();
        for (std::size_t i = 0; i < std::size_t(cascades.size()); ++i) {
            const float factor = cascades[qsizetype(i)] < 0 ? 1 : float(cascades[qsizetype(i)] + 2);
            for (std::size_t frame = 0; frame < 32; ++frame)
                QCOMPARE(buffers > 1 ? host.data[i][frame] : host.data[0][frame * stride + i],
                         host.value * factor);
        }
    }
}

void tst_EqTap::leavesWhatItCannotFilter()
{
    Host host(2, 1);
    host.tap->prepare(format(2, planar));
    host.buffers[0].dataByteSize -= 1;
    host.process(64);
    QCOMPARE(host.changed(0), 0);
    QCOMPARE(host.changed(1), 64);
    host.buffers[1].data = nullptr;
    host.process(63);
    QCOMPARE(host.changed(0), 63);
    QCOMPARE(host.changed(1), 0);
    host.source.frames = -5;
    QCOMPARE(host.process(64).frames, -5);
    QCOMPARE(host.changed(0), 0);
}

void tst_EqTap::passesFlagsAndFaults()
{
    Host host;
    host.tap->prepare(format());
    host.source = {0, 20, startOfStream | AudioTap::flagEndOfStream | 0x7};
    const auto result = host.process(32, 0x1000);
    QCOMPARE(result.frames, 20);
    QCOMPARE(result.flags, 0x1300U);
    QCOMPARE(host.changed(), 40);

    host.source.status = -1;
    const auto failed = host.process(32, 0x1000);
    QCOMPARE(failed.frames, 0);
    QCOMPARE(failed.flags, 0x1000U);
    QCOMPARE(host.ctx().dbgCounter, 1);

    host.source = {};
    host.value = 1;
    tapFinalize(*host.tap);
    tapPrepare(*host.tap, format());
    tapUnprepare(*host.tap);
    const auto unknown = host.process(32, 0x1000);
    QCOMPARE(unknown.frames, 0);
    QCOMPARE(unknown.flags, 0x1000U);
    QVERIFY(host.data[0][0] != 1); // the source was not asked

    QVERIFY(!makeTap({}));
}

void tst_EqTap::printsLines()
{
    eqSnapshotStore().write(true, {0, -3.6F, 2.5F, 12, -0.2F});
    Host host(1, 1, 64);
    host.value = 0.5F;
    const auto lines = printed([&] {
        (void)makeTap({});
        host.tap->prepare(format(0, 0, 22050.5));
        host.tap->prepare(format(1, planar, 100000));
        for (int call = 1; call <= 600; ++call) {
            if (call == 512)
                host.buffers[0].dataByteSize = 255;
            host.process(64);
        }
    });
    const QByteArray expected = R"(\[EqTap\] create failed -50
\[EqTap\] prepare: sr=22050\.5 ch=0 bits=32 fmt=int interleaved=true
\[EqTap\] prepare: sr=100000\.0 ch=1 bits=32 fmt=float interleaved=false
\[EqTap\] process #1 bufs=1 ch/buf=1 bytes=256 rms_in=0\.500 rms_out=0\.[0-9]{3} enabled=1 gains=\[0,-4,2,12,-0\]
\[EqTap\] process #256 .* rms_in=0\.500 rms_out=0\.[0-9]{3} .*
\[EqTap\] process #512 bufs=1 ch/buf=1 bytes=255 rms_in=0\.500 rms_out=- .*
)";
    const QRegularExpression pattern(QRegularExpression::anchoredPattern(QString::fromLatin1(expected)));
    QVERIFY2(pattern.match(QString::fromUtf8(lines)).hasMatch(), lines.constData());
}

void tst_EqTap::processesWithoutAllocating()
{
    Host host;
    host.tap->prepare(format());
    host.process();
    const int before = allocations;
    for (int i = 0; i < 10; ++i)
        host.process();
    QCOMPARE(allocations, before);
    eqSnapshotStore().write(true, {1, 2, 3, 4, 5});
    host.process();
    QVERIFY(allocations > before); // the counter counts
}

/// The user drags a slider and flips the switch, items come and go, and one tap is fed all along.
void tst_EqTap::seesWholeSettings()
{
    constexpr EqGains up{1, 1, 1, 1, 1}, down{};
    eqSnapshotStore().write(false, down);
    std::atomic<bool> stop = false;
    int mixed = 0;
    std::thread audio([&] {
        Host host;
        host.tap->prepare(format());
        for (int read = 0; !stop; ++read) {
            const auto box = eqSnapshotStore().read();
            mixed += *box.gains != (box.enabled ? up : down);
            if (read % 64 == 0)
                host.process();
        }
    });
    std::thread items([&] {
        for (; !stop; std::this_thread::yield())
            (void)makeTap();
    });
    for (int i = 0; i < 1000000; ++i)
        eqSnapshotStore().write(i % 2 == 0, i % 2 == 0 ? up : down);
    stop = true;
    audio.join();
    items.join();
    QCOMPARE(mixed, 0);
}

QTEST_GUILESS_MAIN(tst_EqTap)
#include "tst_EqTap.moc"
