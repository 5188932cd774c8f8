#include "Models/APIModels.h"

#include <QTest>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

template <typename T>
bool fails(const QByteArray &body)
{
    try {
        static_cast<void>(json::decode<T>(body));
        return false;
    } catch (const DecodingError &) {
        return true;
    }
}

} // namespace

class tst_APIModels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sessions();
    void entities();
    void strictness();
};

void tst_APIModels::sessions()
{
    const std::pair<QByteArray, QString> cases[]{
        {R"({"session_id":"s","bot_link":"l","expires_in":90})", u"s l - - 90"_s},
        {R"({"data":{"session_id":"s","telegram_username":"t"}})", u"s - - t 300"_s},
        {R"({"session_id":"a","data":{"session_id":"b","bot_username":"n","expires_in":5}})", u"a - n - 5"_s},
        {R"({"bot_link":"a","data":{"session_id":"s","bot_link":"b"}})", u"s a - - 300"_s},
        {R"({"session_id":null,"data":{"session_id":"s"}})", u"s - - - 300"_s},
        {R"({"session_id":"","data":{"session_id":"s"}})", u""_s},
        {R"({"data":null,"expires_in":3})", u""_s},
    };
    const auto text = [](const std::optional<QString> &value) { return value.value_or(u"-"_s); };
    for (const auto &[body, resolved] : cases) {
        QString shown;
        if (const auto session = json::decode<SessionInfoEnvelope>(body).resolved())
            shown = QStringList{session->sessionID, text(session->botLink), text(session->botUsername),
                                text(session->telegramUsername), QString::number(session->expiresIn)}
                        .join(u' ');
        QCOMPARE(shown, resolved);
    }
}

void tst_APIModels::entities()
{
    auto entity = json::decode<SpotifyEntity>(
        R"({"type":7,"kind":"album","cover_url":[1],"artwork_url":"a","track_count":2,"tracks":[{"id":"x"}]})");
    QCOMPARE(entity.type, u"album"_s);
    QCOMPARE(entity.coverURL, u"a"_s);
    QCOMPARE(entity.tracks->constFirst().id, u"x"_s);
    entity =
        json::decode<SpotifyEntity>(R"({"kind":"album","type":"track","cover_url":"c","artwork_url":"a"})");
    QCOMPARE(entity.type, u"track"_s);
    QCOMPARE(entity.coverURL, u"c"_s);
    entity = json::decode<SpotifyEntity>(R"({"type":null,"kind":false})");
    QVERIFY(!entity.type && !entity.coverURL && !entity.tracks);
    QVERIFY(fails<SpotifyEntity>(R"({"track_count":"2"})") &&
            fails<SpotifyEntity>(R"({"tracks":[{"id":3}]})"));
}

void tst_APIModels::strictness()
{
    QVERIFY(fails<User>(R"({"id":"1"})") && fails<User>(R"({"username":1})"));
    QVERIFY(fails<PlaylistSummary>(R"({"title":"t"})") && fails<PlaylistSummary>(R"({"id":"1"})"));
    QVERIFY(fails<FavoriteTrack>(R"({"id":1,"track_id":2})"));
    QVERIFY(fails<ToggleResult>(R"({"data":{"favorited":1}})"));
    QVERIFY(fails<PlaylistsEnvelope>(R"({"data":{"playlists":[{"id":1},{}]}})"));
    QVERIFY(fails<PlaylistsEnvelope>(R"({"data":[]})") && fails<ShazamData>(R"({"duration":1.5})"));
    QVERIFY(fails<AuthEnvelope>(R"({"code":"200"})"));
}

QTEST_GUILESS_MAIN(tst_APIModels)
#include "tst_APIModels.moc"
