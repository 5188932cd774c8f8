#include "Views/Ads/AdBannerView.h"
#include "Views/Catalogue/HomeDecisions.h"
#include "Views/Catalogue/StationCard.h"
#include "Views/Catalogue/TrackListModel.h"
#include "Views/Equaliser/EQView.h"
#include "Views/Playback/MiniPlayerBar.h"
#include "Views/Playback/PlayerDecisions.h"
#include "Views/Playback/StationSelection.h"
#include "Views/Shared/Shadow.h"
#include "Views/Shared/ShownText.h"
#include "Views/Shared/SpringCurve.h"
#include "Views/Shared/ThemeTones.h"

#include <QEasingCurve>
#include <QTest>

#include <cmath>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

Station stationWith(int tracks, std::optional<qint64> count)
{
    Station station;
    station.genre = u"g"_s;
    station.trackCount = count;
    station.tracks.emplace(tracks);
    return station;
}

} // namespace

class tst_ViewDecisions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void greetingByHour();
    void statusLabelByPrecedence();
    void cardsAndTaps();
    void timesAndLengths();
    void dragsDown();
    void playsAtATrack();
    void advertisements();
    void textsFitALabel();
    void tonesAreReadable();
    void springsSettle();
    void shadowFadesOutward();
};

void tst_ViewDecisions::greetingByHour()
{
    const QHash<int, QString> firstWords{{0, u"شب"_s},   {4, u"شب"_s},   {5, u"صبح"_s},  {11, u"صبح"_s},
                                         {12, u"ظهر"_s}, {13, u"ظهر"_s}, {14, u"عصر"_s}, {18, u"عصر"_s},
                                         {19, u"شب"_s},  {23, u"شب"_s}};
    for (auto it = firstWords.cbegin(); it != firstWords.cend(); ++it)
        QCOMPARE(greeting(it.key()), QString(it.value() + u" بخیر، به رادیو خوش اومدی"_s));
}

void tst_ViewDecisions::statusLabelByPrecedence()
{
    QCOMPARE(statusLabel({.isBuffering = true, .isPlaying = true, .isLoading = true}), u"اتصال…"_s);
    QCOMPARE(statusLabel({.isPlaying = true, .isLoading = true}), u"در حال پخش"_s);
    QCOMPARE(statusLabel({.isLoading = true}), u"بارگذاری"_s);
    QCOMPARE(statusLabel({.isLoading = true, .stationCount = 7}), u"7 ایستگاه"_s);
    QCOMPARE(statusLabel({}), u"0 ایستگاه"_s);
}

void tst_ViewDecisions::cardsAndTaps()
{
    QCOMPARE(trackLine(stationWith(3, 0)) + trackLine(stationWith(3, {})) + trackLine(stationWith(0, 12)),
             QString());
    auto station = stationWith(0, 12);
    QVERIFY(!opensDetail(station));
    station.source = u"songsara"_s; // whose tracks come on demand
    QVERIFY(opensDetail(station));

    // Equal stations may still need their card redrawn.
    auto renamed = stationWith(3, 12);
    renamed.serverName = u"نام تازه"_s;
    QVERIFY(renamed == stationWith(3, 12) && cardOf(renamed) != cardOf(stationWith(3, 12)));
    QVERIFY(cardOf(stationWith(4, 12)) != cardOf(stationWith(3, 12)));
}

void tst_ViewDecisions::timesAndLengths()
{
    QCOMPARE(formatSeconds(3725), u"62:05"_s);
    QCOMPARE(formatSeconds(59.6), u"1:00"_s);
    QCOMPARE(formatSeconds(0.2), u"0:00"_s);
    for (const double none : {0.0, -5.0, std::nan(""), double(INFINITY), -double(INFINITY)})
        QCOMPARE(formatSeconds(none), u"0:00"_s);
    QVERIFY(formatSeconds(1e300).size() > 10);
    QCOMPARE(trackLength(61), u"1:01"_s);
    QCOMPARE(trackLength(0), QString());
    QCOMPARE(trackLength(std::nullopt), QString());

    QCOMPARE(playedShare(false, 50, 200), 0.25);
    QCOMPARE(playedShare(false, 300, 200), 1.0);
    for (const double none :
         {playedShare(true, 50, 200), playedShare(false, 50, 0), playedShare(false, 50, std::nan(""))})
        QVERIFY(none < 0);
}

void tst_ViewDecisions::dragsDown()
{
    QCOMPARE(dragOffset({3, 40}, 0), 40.0);
    QCOMPARE(dragOffset({50, 40}, 12), 12.0); // goes sideways
    QCOMPARE(dragOffset({0, -40}, 12), 12.0);
    QVERIFY(dragDismisses({0, 121}) && !dragDismisses({0, 119}) && !dragDismisses({250, 200}));
    QVERIFY(!dragDismisses({-250, 200}));
}

void tst_ViewDecisions::playsAtATrack()
{
    auto station = stationWith(3, 3);
    station.artworkURL = u"/station"_s;
    station.title = u"old"_s;
    station.elapsedSeconds = 12;
    (*station.tracks)[1].title = u"two"_s;
    (*station.tracks)[2].artworkURL = u"/three"_s;
    const auto second = stationAtTrack(station, 4); // beyond the end it wraps
    QCOMPARE(second.trackIndex, 1);
    QCOMPARE(second.title, u"two"_s);
    QCOMPARE(second.artworkURL, u"/station"_s);
    QVERIFY(!second.elapsedSeconds);
    const auto last = stationAtTrack(station, -1);
    QCOMPARE(last.trackIndex, 2);
    QVERIFY(!last.title); // the track has none
    QCOMPARE(last.artworkURL, u"/three"_s);
    const auto live = stationWith(0, 0);
    QCOMPARE(stationAtTrack(live, 5), live);
}

void tst_ViewDecisions::advertisements()
{
    const QUrl backend(u"https://radio.example"_s);
    QVERIFY(!adNetwork({}, u"site"_s, backend));
    QVERIFY(!adNetwork(u"https://ads.example"_s, {}, backend));
    QVERIFY(!adNetwork(u"file:///etc"_s, u"site"_s, backend));
    QCOMPARE(adNetwork(u"backend"_s, u"site"_s, backend)->host, backend);
    const auto page = adPage(*adNetwork(u"https://ads.example"_s, u"a'b.example"_s, backend));
    QVERIFY(page.contains(u"'https://ads.example/serve/a%27b.example/loader.js'"_s));
    QCOMPARE(page.count(u"id=\"mediaad-DABn6\""_s), 1);

    const QUrl web(u"https://shop.example"_s);
    QCOMPARE(adNavigation(web, true), AdNavigation::StaysInPage);
    QCOMPARE(adNavigation(web, false), AdNavigation::OpensInBrowser);
    QCOMPARE(adNavigation(QUrl(u"mailto:a@shop.example"_s), false), AdNavigation::StaysInPage);
    QCOMPARE(adNavigation(QUrl(), false), AdNavigation::StaysInPage);
}

void tst_ViewDecisions::textsFitALabel()
{
    const auto family = u"👨‍👩‍👧‍👦"_s; // one character of eleven units
    const auto ellipsis = u"…"_s;
    QCOMPARE(shownText(u"یک نام"_s), u"یک نام"_s);
    QVERIFY(EQView::shownFooter().contains(u"\u2066+12\u2069"_s)); // a sign stays before its number
    QCOMPARE(EQView::gainText(3) + EQView::gainText(-2), u"\u2066+3\u2069\u2066-2\u2069"_s);
    QCOMPARE(shownText(u"یک\r\nنام\u2028دیگر"_s), u"یک  نام دیگر"_s);
    QCOMPARE(shownText(u"ب"_s.repeated(300)), u"ب"_s.repeated(300));
    QCOMPARE(shownText(u"ب"_s.repeated(10'000)), QString(u"ب"_s.repeated(300) + ellipsis));
    const auto families = shownText(family.repeated(1'000));
    QVERIFY(families.endsWith(QString(family + ellipsis)));
    QVERIFY(shownText(QString(u"e"_s + u"\u0301"_s.repeated(10'000))).size() < 2'000);
}

void tst_ViewDecisions::tonesAreReadable()
{
    for (const QColor color : {QColor(Qt::black), QColor(Qt::white), QColor(200, 20, 30), QColor(20, 20, 200),
                               QColor(240, 230, 40), QColor(128, 128, 128)}) {
        QVERIFY(luminance(inkTone(color)) >= 0.2999 && luminance(glowTone(color)) >= 0.0999);
        const auto washed = blended(backgroundColor(), color, washTop);
        const auto veiled = blended(washed, backgroundColor(), veilOpacity(color));
        QVERIFY2(luminance(veiled) <= 0.0431, qPrintable(color.name()));
    }
    const QColor bright(240, 230, 40);
    QCOMPARE(inkTone(bright).name(), bright.name());
    QCOMPARE(veilOpacity(Qt::black), 0.0);
}

void tst_ViewDecisions::springsSettle()
{
    for (const auto &[response, damping] : {std::pair(0.4, 0.85), {0.3, 0.7}, {0.5, 0.85}, {0.4, 1.0}}) {
        const SpringCurve spring{response, damping};
        QEasingCurve easing(QEasingCurve::BezierSpline);
        const auto points = spring.bezier();
        for (qsizetype i = 0; i < points.size(); i += 6)
            easing.addCubicBezierSegment({points[i], points[i + 1]}, {points[i + 2], points[i + 3]},
                                         {points[i + 4], points[i + 5]});

        // The equation of motion itself, integrated step by step, is the judge.
        const auto stiffness = std::pow(2 * M_PI / response, 2);
        const auto friction = 4 * M_PI * damping / response;
        const auto length = spring.duration() / 1000.0;
        const double step = 1e-5;
        double position = 0;
        double velocity = 0;
        int checked = 0;
        for (double t = 0; t < length; t += step) {
            if (t >= checked * length / 50) {
                QVERIFY2(std::abs(easing.valueForProgress(t / length) - position) < 0.003,
                         qPrintable(QString::number(t)));
                ++checked;
            }
            velocity += (stiffness * (1 - position) - friction * velocity) * step;
            position += velocity * step;
        }
        QVERIFY(checked >= 50);
        QCOMPARE(easing.valueForProgress(1), 1.0);
    }
}

void tst_ViewDecisions::shadowFadesOutward()
{
    for (const int boxHeight : {0, 72}) {
        const auto shadow = shadowImage(20, 36, boxHeight);
        const auto middle = shadow.height() / 2;
        QVERIFY(qAlpha(shadow.pixel(shadow.width() / 2, middle)) > 240);
        QVERIFY(qAlpha(shadow.pixel(0, middle)) < 5 && qAlpha(shadow.pixel(shadow.width() / 2, 0)) < 5);
        for (int x = 1; x < shadow.width() / 2; ++x)
            QVERIFY(qAlpha(shadow.pixel(x, middle)) >= qAlpha(shadow.pixel(x - 1, middle)));
    }
}

QTEST_GUILESS_MAIN(tst_ViewDecisions)
#include "tst_ViewDecisions.moc"
