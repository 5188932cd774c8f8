#include "Models/Station.h"
#include "Support/Columns.h"

#include <QTest>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

Station station(const QByteArray &json)
{
    return json::decode<Station>(json);
}

QString shown(const std::optional<QString> &text)
{
    return text.value_or(u"-"_s);
}

QString shown(const std::optional<qint64> &number)
{
    return number ? QString::number(*number) : u"-"_s;
}

} // namespace

class tst_Station : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsEveryField();
    void textsInEveryForm_data();
    void textsInEveryForm();
    void trackTolerance();
    void strictness_data();
    void strictness();
    void wrapsTheTrackIndex();
    void programmeLine();
    void names();
    void addresses();
    void hydration();
    void identity();
};

void tst_Station::readsEveryField()
{
    const auto s = station(R"({"elapsed_seconds": 12, "genre":"g","title":"t","artist":"a","server_name":"n",
        "stream_url":"u","artwork_url":"w","source":"s","category":"iranian","display_genre":"d","track_index":-1,
        "track_count":9,"future":{"a":[1,{"b":null}]},"tracks":[{"id":5,"track_type":"radio","track_id":"x",
        "title":"گل","artist":"b","artwork_url":"c","stream_url":"e","duration":215}]})");
    const auto texts = {s.genre,       *s.title,  *s.artist,   *s.serverName,  *s.streamURL,
                        *s.artworkURL, *s.source, *s.category, *s.displayGenre};
    QCOMPARE(QStringList(texts).join(u' '), u"g t a n u w s iranian d"_s);
    QCOMPARE(s.trackIndex, -1);
    QCOMPARE(s.trackCount, 9);
    QCOMPARE(s.elapsedSeconds, 12.0);
    const PlaylistTrack expected{5, u"radio"_s, u"x"_s, u"گل"_s, u"b"_s, u"c"_s, u"e"_s, 215};
    QCOMPARE(s.tracks, QList{expected});

    const auto bare = station(R"({"genre":"g","title":null})");
    QVERIFY(!bare.title && !bare.tracks && !bare.trackIndex && !bare.elapsedSeconds);
    QVERIFY(json::decode<StationsResponse>(R"({"code":500})").data == std::nullopt);
    QCOMPARE(json::decode<StationsResponse>("\xEF\xBB\xBF{\"data\":[]}").data, QList<Station>());
}

void tst_Station::textsInEveryForm_data()
{
    // text: empty: refused
    addColumns<QByteArray, QString>("json", "text");
    const QString longText = u"ترانه "_s.repeated(200);
    QTest::newRow("escapes") << R"("\"a\\\/\b\f\n\r\t\u06af")"_ba << u"\"a\\/\b\f\n\r\tگ"_s;
    QTest::newRow("surrogates") << R"("\ud83c\udfb5🎵")"_ba << u"🎵🎵"_s;
    QTest::newRow("every length of UTF-8")
        << R"("aéگ€🎵 and some more words")"_ba << u"aéگ€🎵 and some more words"_s;
    QTest::newRow("blanks behind") << "\"a\" \n\t"_ba << u"a"_s;
    QTest::newRow("quote behind an escape") << R"("a\\")"_ba << u"a\\"_s;
    QTest::newRow("long") << '"' + longText.toUtf8() + '"' << longText;
    QTest::newRow("long with escapes") << R"("\n)" + longText.toUtf8() + '"' << QString(u'\n' + longText);
    QTest::newRow("bad escape") << R"("\x41")"_ba << QString();
    QTest::newRow("half a surrogate") << R"("\ud83c")"_ba << QString();
    QTest::newRow("control character") << "\"a\x01\""_ba << QString();
    QTest::newRow("overlong") << "\"\xC0\x80\""_ba << QString();
}

void tst_Station::textsInEveryForm()
{
    const auto [json, text] = fetched<QByteArray, QString>("json", "text");
    // as a value, three times over, in a field of each tone, and as a key
    const QByteArray object = R"({"\u0067enre":)" + json + ",\"title\":" + json + R"(,"tracks":[{"id":)" +
                              json + R"(},{"title":)" + json + R"(}]})";
    if (text.isEmpty()) {
        QVERIFY_EXCEPTION_THROWN(station(object), DecodingError);
        QVERIFY_EXCEPTION_THROWN(station("{\"genre\":\"a\"," + json + ":1}"), DecodingError);
        return;
    }
    const auto s = station(object);
    QCOMPARE(s.genre, text);
    QCOMPARE(s.title, text);
    QCOMPARE(s.tracks->first().trackID, text);
    QCOMPARE(s.tracks->last().title, text);
}

void tst_Station::trackTolerance()
{
    const std::pair<QByteArray, QString> cases[]{
        // what it gives: id, track id and duration
        {R"({"id":"12"})", u"12 12 -"_s},
        {R"({"id":5})", u"5 5 -"_s},
        {R"({"id":"x"})", u"- x -"_s},
        {R"({"id":""})", u"-  -"_s},
        {R"({"id":"+7","duration":"-3"})", u"7 +7 -3"_s},
        {R"({"id":" 7"})", u"-  7 -"_s},
        {R"({"id":"۷"})", u"- ۷ -"_s},
        {R"({"id":"9223372036854775808"})", u"- 9223372036854775808 -"_s},
        {R"({"id":9223372036854775807,"duration":-9223372036854775808})",
         u"9223372036854775807 9223372036854775807 -9223372036854775808"_s},
        {R"({"id":9223372036854775808,"duration":-9223372036854775809})", u"- - -"_s},
        {R"({"id":99999999999999999999999999,"duration":1e30,"x":-1E+400 })", u"- - -"_s},
        {R"({"id":3,"track_id":""})", u"3  -"_s},
        {R"({"id":3,"track_id":44})", u"3 44 -"_s},
        {R"({"id":true,"track_id":[1],"duration":{"a":1},"title":7})", u"- - -"_s},
        {R"({"duration":"215"})", u"- - 215"_s},
        {R"({"duration":215.0})", u"- - 215"_s},
        {R"({"duration":215.5})", u"- - -"_s},
        {R"({"duration":"3:35"})", u"- - -"_s},
        {"{}", u"- - -"_s},
    };
    for (const auto &[json, expected] : cases) {
        const auto t = json::decode<PlaylistTrack>(json);
        QCOMPARE((QStringList{shown(t.id), shown(t.trackID), shown(t.duration)}.join(u' ')), expected);
        QVERIFY(!t.title);
    }
}

void tst_Station::strictness_data()
{
    QTest::addColumn<QByteArray>("json");
    const auto row = [](const QByteArray &json) { QTest::newRow(json.constData()) << json; };
    for (const auto *text : {"", "<html></html>", "[]", "null", R"({"data":{}})", R"({"code":"1","data":[]})",
                             R"({"data":[{"title":"no genre"}]})", R"({"data":[{"genre":null}]})",
                             R"({"data":[{"genre":"a"},{"genre":"b","track_index":"1"}]})",
                             R"({"data":[{"genre":"a"}])", R"({"data":[{"genre":"a"}]} x)",
                             R"({"data":[{"genre":"a"}]}{})", "{\"data\":[{\"genre\":\"\xff\xfe\"}]}"})
        row(text);
    for (const auto *more : {R"(,"track_index":1.5)", R"(,"elapsed_seconds":"1")", R"(,"title":7)",
                             R"(,"unknown":nul)", R"(,"unknown":{"x":01})", R"(,"unknown":1.e5)",
                             R"(,"unknown":1:4)", ":4", R"( "title":"b")", R"(,"tracks":{})"})
        row(R"({"data":[{"genre":"a")" + QByteArray(more) + "}]}");
    for (const auto *track :
         {"1", "null", R"({"duration":1.5e})", R"({"id":-})", R"({"id":0"12"})", R"({"id":1e400:4})"})
        row(R"({"data":[{"genre":"a","tracks":[)" + QByteArray(track) + "]}]}");
    QTest::newRow("nested without end")
        << "{\"x\":"_ba + QByteArray(100000, '[') + QByteArray(100000, ']') + '}';
    QTest::newRow("truncated") << R"({"data":[{"genre":"a","title":"b)"_ba;
}

void tst_Station::strictness()
{
    QFETCH(QByteArray, json);
    QVERIFY_EXCEPTION_THROWN(json::decode<StationsResponse>(json), DecodingError);
}

void tst_Station::wrapsTheTrackIndex()
{
    for (const auto &[index, count, normalized] : {std::tuple("null", 3, 0),
                                                   {"2", 5, 2},
                                                   {"7", 5, 2},
                                                   {"-1", 5, 4},
                                                   {"-9223372036854775808", 7, 6},
                                                   {"7", 0, 0}}) {
        auto s = station(R"({"genre":"g","track_index":)" + QByteArray(index) + '}');
        s.tracks = QList<PlaylistTrack>(count);
        QCOMPARE(s.normalizedTrackIndex(), normalized);
        QCOMPARE(s.currentTrack(), count ? &s.tracks->at(normalized) : nullptr);
    }
}

void tst_Station::programmeLine()
{
    const std::array<QString, 3> cases[]{
        // title, and what is shown as title and as artist
        {u"A - B - C"_s, u"B - C"_s, u"A"_s},
        {u"Jean-Luc - Song"_s, u"Luc - Song"_s, u"Jean"_s},
        {u"A-B"_s, u"A-B"_s, u""_s},
        {u"خواننده - ترانه"_s, u"ترانه"_s, u"خواننده"_s},
        {u"- A - B"_s, u"A - B"_s, u"A - B"_s},
        {u" - "_s, u""_s, u""_s},
        {u"A - \n"_s, u"\n"_s, u"A"_s}, // a line break is no blank
        {u""_s, u"genre"_s, u""_s},
    };
    for (const auto &[title, shownTitle, shownArtist] : cases) {
        Station s;
        s.genre = u"genre"_s;
        s.title = title;
        QCOMPARE(s.displayTrackTitle(), shownTitle);
        QCOMPARE(s.displayArtist(), shownArtist);
        QCOMPARE(s.currentTrackID(), QString(u"genre#"_s + shownTitle));
    }
}

void tst_Station::names()
{
    for (const auto &[serverName, hidden] : {std::pair(u"رادیو موج"_s, false),
                                             {u"ایرانی"_s, true},
                                             {u"بین المللی"_s, true},
                                             {u"بین\u200Cالمللی"_s, true},
                                             {u"بینالمللی"_s, true},
                                             {u""_s, true}}) {
        Station s;
        s.genre = u"g"_s;
        s.serverName = serverName;
        QCOMPARE(s.displayName(), hidden ? u"g"_s : serverName);
        s.title = u"عنوان"_s;
        QCOMPARE(s.displayName(), hidden ? u"عنوان"_s : serverName);
    }
}

void tst_Station::addresses()
{
    Station s;
    s.genre = u"g"_s;
    s.title = u"دو واژه & a+b"_s;
    QVERIFY(!s.currentStreamURL() && !s.currentTrackArtworkURL());
    s.streamURL = u""_s;
    s.artworkURL = u"/a?x=1"_s;
    QCOMPARE(s.currentStreamURL(), u""_s);
    QCOMPARE(s.currentTrackArtworkURL(), u"/a?x=1&v=%D8%AF%D9%88%20%D9%88%D8%A7%DA%98%D9%87%20&%20a+b"_s);
    s.artworkURL = u"/a"_s;
    s.title = u"x#\"%"_s;
    QCOMPARE(s.currentTrackArtworkURL(), u"/a?v=x%23%22%25"_s);

    s.tracks = QList<PlaylistTrack>(2);
    s.trackIndex = 3;
    QCOMPARE(s.currentStreamURL(), u"/stream/g?track=1"_s);
    QCOMPARE(s.currentTrackArtworkURL(), u"/a"_s);
    QCOMPARE(s.currentTrackID(), u"g#1"_s);
    (*s.tracks)[1].streamURL = u"/one.mp3"_s;
    (*s.tracks)[1].artworkURL = u"/one.png"_s;
    QCOMPARE(s.currentStreamURL(), u"/one.mp3"_s);
    QCOMPARE(s.currentTrackArtworkURL(), u"/one.png"_s);
    setOfflineArtworkLookup([](const PlaylistTrack &) { return std::optional(u"file:///kept.art"_s); });
    QCOMPARE(s.currentTrackArtworkURL(), u"file:///kept.art"_s);
    setOfflineArtworkLookup({});
}

void tst_Station::hydration()
{
    const std::tuple<std::optional<QString>, std::optional<QList<PlaylistTrack>>, bool> cases[]{
        {{}, {}, false},
        {u"songsara"_s, {}, true},
        {u"songsara"_s, QList<PlaylistTrack>(), true},
        {u"songsara"_s, QList<PlaylistTrack>(1), false},
        {u"Songsara"_s, {}, false},
    };
    for (const auto &[source, tracks, needed] : cases)
        QCOMPARE((Station{.source = source, .tracks = tracks}.needsHydration()), needed);
}

void tst_Station::identity()
{
    Station a;
    a.genre = u"g"_s;
    auto b = a;
    b.artist = u"x"_s;
    b.tracks = QList<PlaylistTrack>(3);
    b.elapsedSeconds = 5;
    QCOMPARE(a, b);
    for (const auto change :
         {+[](Station &s) { s.genre = u"h"_s; }, +[](Station &s) { s.title = u""_s; },
          +[](Station &s) { s.artworkURL = u""_s; }, +[](Station &s) { s.trackIndex = 0; }}) {
        auto changed = a;
        change(changed);
        QVERIFY(!(a == changed));
    }
    b.title = u"other"_s;
    QCOMPARE(qHash(a), qHash(b));
}

QTEST_GUILESS_MAIN(tst_Station)
#include "tst_Station.moc"
