#include "Services/Account/Keychain.h"
#include "Support/FakeSecureItemStore.h"
#include "Support/TestAccess.h"

#include <QTest>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

const auto key = u"session_token"_s;
const auto name = u"ir.navorin.NavorinRadio/session_token"_s;
using Text = std::optional<QString>;

} // namespace

class tst_Keychain : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_store.emplace();
        TestAccess::share<Keychain>(*m_store);
    }
    void cleanup() { TestAccess::forget<Keychain>(); }

    void reads();
    void writes();
    void hangingStore();
    void storeGoesFirst();
    void warmReading();

private:
    std::optional<FakeSecureItemStore> m_store;
};

void tst_Keychain::reads()
{
    const auto word = u"نشانه 🎵"_s;
    const std::pair<QByteArray, Text> cases[]{
        {word.toUtf8(), Text(word)},                    // text
        {""_ba, Text(u""_s)},                           // empty
        {"\xEF\xBB\xBF-\0-"_ba, Text(u"\uFEFF-\0-"_s)}, // mark of byte order, zero
        {"caf\xE9 au lait"_ba, Text()},                 // latin-1
        {word.toUtf8().chopped(1), Text()},             // cut
        {"\xC0\xAF"_ba, Text()},                        // overlong
        {"\xED\xA0\x80"_ba, Text()},                    // surrogate
    };
    for (const auto &[bytes, text] : cases) {
        cleanup();
        init();
        QVERIFY(!Keychain::get(key));
        m_store->items.insert(name, QByteArray(bytes.constData(), bytes.size()));
        QCOMPARE(Keychain::get(key), text);
        QCOMPARE(Keychain::getSoon(key).result(), text);
        QVERIFY(!Keychain::get(u"other"_s));
        m_store->available = false;
        QVERIFY(!Keychain::get(key));
    }
}

void tst_Keychain::writes()
{
    const auto none = QByteArray();
    const std::tuple<bool, QByteArray, Text, QStringList, QByteArray> cases[]{
        // available, stored before, value, what the store is asked, stored after
        {true, none, Text(u"ب"_s), {u"exists"_s, u"add"_s}, "\xD8\xA8"_ba},
        {true, "a"_ba, Text(u"b"_s), {u"exists"_s, u"update"_s}, "b"_ba},
        {false, "a"_ba, Text(u"b"_s), {u"exists"_s, u"add"_s}, "a"_ba},
        {true, "a"_ba, Text(u""_s), {u"remove"_s}, none},
        {true, "a"_ba, Text(), {u"remove"_s}, none},
        {true, none, Text(u""_s), {u"remove"_s}, none},
    };
    for (const auto &[available, before, value, asked, after] : cases) {
        cleanup();
        init();
        m_store->available = available;
        if (!before.isNull())
            m_store->items.insert(name, before);
        Keychain::set(value, key);
        QCOMPARE(m_store->asked, asked);
        QCOMPARE(m_store->items.value(name), after);
        QVERIFY(m_store->items.size() <= 1);
        QCOMPARE(m_store->settled, 0);
    }
}

void tst_Keychain::hangingStore()
{
    m_store->hangs = true;
    const auto before = Keychain::getSoon(key);
    Keychain::set(u"old"_s, key);
    Keychain::set(u"new"_s, key);
    const auto after = Keychain::getSoon(key);
    QVERIFY(!Keychain::get(key));
    QCOMPARE(m_store->settled, 1);
    QVERIFY(!before.isFinished() && !after.isFinished());
    m_store->wakeUp();
    QCOMPARE(before.result(), Text());
    QCOMPARE(after.result(), Text(u"new"_s));
    QCOMPARE(Keychain::get(key), Text(u"new"_s));
    QCOMPARE(m_store->settled, 1);
}

void tst_Keychain::storeGoesFirst()
{
    m_store->hangs = true;
    const auto reading = Keychain::getSoon(key);
    m_store.reset();
    QVERIFY(reading.isFinished());
    QCOMPARE(reading.result(), Text());
}

void tst_Keychain::warmReading()
{
    const QStringList once{u"copyMatching"_s};
    m_store->items.insert(name, "early"_ba);
    Keychain::warmUp(key);
    Keychain::warmUp(key);
    QCOMPARE(m_store->asked, once);
    QCOMPARE(Keychain::get(key), Text(u"early"_s));
    QCOMPARE(m_store->asked, once);
    m_store->items.insert(name, "changed"_ba);
    QCOMPARE(Keychain::get(key), Text(u"changed"_s));

    Keychain::warmUp(key);
    Keychain::set(u"later"_s, key);
    QCOMPARE(Keychain::getSoon(key).result(), Text(u"later"_s));
}

QTEST_GUILESS_MAIN(tst_Keychain)
#include "tst_Keychain.moc"
