#include "Services/Equaliser/Ctx.h"
#include "Support/Columns.h"

#include <QTest>

#include <bit>
#include <cmath>
#include <complex>
#include <numbers>
#include <random>

using namespace navorin;
using namespace navorin::EqTap;

namespace {

/// The gain in decibels of one section at a frequency, from its coefficients.
double response(const Biquad &section, double frequency, double sampleRate)
{
    const auto z = std::polar(1.0, -2 * std::numbers::pi * frequency / sampleRate);
    const auto above = double(section.b0) + double(section.b1) * z + double(section.b2) * z * z;
    const auto below = 1.0 + double(section.a1) * z + double(section.a2) * z * z;
    return 20 * std::log10(std::abs(above / below));
}

std::vector<float> noise(std::size_t samples, float loudness)
{
    static std::mt19937 random(7);
    std::uniform_real_distribution<float> value(-loudness, loudness);
    std::vector<float> result(samples);
    std::ranges::generate(result, [&] { return value(random); });
    return result;
}

bool sameBits(const std::vector<float> &a, const std::vector<float> &b)
{
    const auto bits = [](float sample) { return std::bit_cast<quint32>(sample); };
    return std::ranges::equal(a, b, {}, bits, bits);
}

} // namespace

class tst_EqFilters : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void peaksAtTheCentre();
    void lowRatesAndHighBands();
    void flatPassesUnchanged();
    void fastWaysGiveTheSameBits_data();
    void fastWaysGiveTheSameBits();
    void integers();
};

void tst_EqFilters::peaksAtTheCentre()
{
    const EqGains gains{6, -12, 6, 12, -3};
    for (const double rate : {44100.0, 48000.0}) {
        const Cascade cascade = makeCascade(gains, rate);
        for (std::size_t band = 0; band < eqBandCount; ++band) {
            QVERIFY(std::abs(response(cascade[band], eqBandCentres[band], rate) - double(gains[band])) <
                    0.02);
            QVERIFY(std::abs(response(cascade[band], 0, rate)) < 0.05); // a peak, never a shelf
            QVERIFY(std::abs(response(cascade[band], rate / 2, rate)) < 0.05);
        }
        // with a Q of 0.85, half the gain is left where the flanks are 1000 Hz / 0.85 apart
        const double lower = 1000 * (std::sqrt(1 + 1 / (4 * 0.85 * 0.85)) - 1 / (2 * 0.85));
        QVERIFY(std::abs(response(cascade[2], lower, rate) - 3) < 0.05);
    }
}

void tst_EqFilters::lowRatesAndHighBands()
{
    QCOMPARE(Biquad::peaking(300, 6, 0), Biquad::peaking(300, 6, 8000));
    QCOMPARE(Biquad::peaking(300, 6, 7999), Biquad::peaking(300, 6, 8000));
    QVERIFY(Biquad::peaking(300, 6, 8001) != Biquad::peaking(300, 6, 8000));

    // 10 kHz at 16 kHz is computed like any other: sin(1.25 pi) and cos(1.25 pi) are both -sqrt(1/2)
    const Biquad beyond = Biquad::peaking(10000, 12, 16000);
    const double a = std::pow(10.0, 0.3), alpha = -std::sqrt(0.5) / 1.7, divisor = 1 + alpha / a;
    QCOMPARE(beyond.b0, float((1 + alpha * a) / divisor));
    QCOMPARE(beyond.b1, float(2 * std::sqrt(0.5) / divisor));
    QCOMPARE(beyond.a2, float((1 - alpha / a) / divisor));
}

void tst_EqFilters::flatPassesUnchanged()
{
    std::vector<Cascade> cascades(2, makeCascade(EqGains{}, 44100));
    for (const Biquad &section : cascades[0])
        QVERIFY(section.b0 == 1 && section.b1 == section.a1 && section.b2 == section.a2);
    const auto in = noise(2000, 1);
    auto out = in;
    filter(cascades, {out.data(), 2, 1000});
    for (std::size_t i = 0; i < in.size(); ++i)
        QVERIFY(std::abs(in[i] - out[i]) < 1e-4F);
}

void tst_EqFilters::fastWaysGiveTheSameBits_data()
{
    addColumns<int, int, int>("way", "cascades", "stride");
    for (const auto way : {FilterWay::Portable, FilterWay::Avx2}) {
        for (const auto &[cascades, stride] : {std::pair(1, 1), {2, 2}, {5, 5}, {2, 6}, {3, 2}, {0, 2}})
            QTest::addRow("way %d: %d of %d", int(way), cascades, stride) << int(way) << cascades << stride;
    }
}

void tst_EqFilters::fastWaysGiveTheSameBits()
{
    const auto [way, cascades, stride] = fetched<int, int, int>("way", "cascades", "stride");
    if (!isAvailable(FilterWay(way)))
        QSKIP("this processor cannot");
    std::vector<Cascade> expected(std::size_t(cascades), makeCascade({12, -7, 3.5F, -12, 9}, 44100));
    auto actual = expected;
    auto shipped = expected;
    const auto compare = [&](std::vector<float> block) {
        const Frames frames{nullptr, std::size_t(stride), block.size() / std::size_t(stride)};
        auto plain = block, best = block;
        filter(FilterWay::Scalar, expected, {plain.data(), frames.stride, frames.count});
        filter(FilterWay(way), actual, {block.data(), frames.stride, frames.count});
        filter(shipped, {best.data(), frames.stride, frames.count});
        return sameBits(plain, block) && sameBits(plain, best) && expected == actual && expected == shipped;
    };
    for (std::size_t length = 0; length < 70; ++length)
        QVERIFY2(compare(noise(length * std::size_t(stride), 1)), qPrintable(QString::number(length)));
    QVERIFY(compare(noise(4099 * std::size_t(stride), 30000)));
    int denormal = 0;
    for (int block = 0; block < 60; ++block) { // the tail runs down into the denormals and on to nothing
        QVERIFY(compare(std::vector<float>(1024 * std::size_t(stride))));
        denormal += cascades > 0 && std::fpclassify(expected[0][4].y1) == FP_SUBNORMAL;
    }
    QVERIFY(cascades == 0 || denormal > 0);
    QVERIFY(compare(noise(100 * std::size_t(stride), 1e-39F)));
}

void tst_EqFilters::integers()
{
    const int highest = std::numeric_limits<int>::max(), lowest = std::numeric_limits<int>::min();
    const std::tuple<int, bool, float, QList<int>, QList<int>> cases[]{
        // bits, interleaved, factor, in and out; 1000 * 32767 / 32768 = 999.97, cut to 999
        {16, false, 1.0F, {1000, -1000, 32767, -32768, 0}, {999, -999, 32766, -32767, 0}},
        {16, false, 2.0F, {20000, -20000}, {32767, -32768}},
        {16, true, 2.0F, {20000, -20000}, {32767, -32767}},
        {32, true, 0.5F, {16777216, -3, 5}, {8388608, -1, 2}},
        {32, false, 4.0F, {1 << 30, -(1 << 30)}, {highest, lowest}},
        {24, true, 2.0F, {1, 2, 3}, {1, 2, 3}},
    };
    for (auto [bits, interleaved, factor, in, out] : cases) {
        Ctx ctx;
        ctx.interleaved = interleaved;
        ctx.bitsPerSample = quint32(bits);
        Cascade amplifier{};
        for (Biquad &section : amplifier)
            section.b0 = 1;
        amplifier[3].b0 = factor;
        ctx.cascades = {amplifier};

        QList<qint16> narrow(in.begin(), in.end());
        void *data = bits == 16 ? static_cast<void *>(narrow.data()) : in.data();
        const auto bytes = quint32(in.size() * (bits == 16 ? 2 : 4));
        QVERIFY(!ctx.filterBuffer(0, {1, bytes - 1, data}, in.size()));
        QCOMPARE(ctx.filterBuffer(0, {1, bytes, data}, in.size()), bits != 24);
        QCOMPARE(bits == 16 ? QList<int>(narrow.begin(), narrow.end()) : in, out);
    }
}

QTEST_GUILESS_MAIN(tst_EqFilters)
#include "tst_EqFilters.moc"
