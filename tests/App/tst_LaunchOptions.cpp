#include "LaunchOptions.h"

#include <QTest>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

class tst_LaunchOptions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void parsing();
    void backendAddresses_data();
    void backendAddresses();
    void deepLinks_data();
    void deepLinks();
};

void tst_LaunchOptions::parsing()
{
    const auto options = LaunchOptions::parse({u"--demo"_s, u"--debug-sync"_s, u"navorin://shazam"_s});
    QVERIFY(options.demo && options.debugSync && !options.debugPlayer && !options.noCover && !options.help);
    QCOMPARE(options.address, QUrl(u"navorin://shazam"_s));
    QVERIFY(options.unknown.isEmpty());
    QCOMPARE(LaunchOptions::parse({u"--Demo"_s, u"x"_s}).unknown, u"--Demo"_s);
    QCOMPARE(LaunchOptions::parse({u"stray"_s}).unknown, u"stray"_s);
    QVERIFY(!LaunchOptions::parse({u"--demo=1"_s}).demo);
}

void tst_LaunchOptions::backendAddresses_data()
{
    QTest::addColumn<QString>("environment");
    QTest::addColumn<QString>("address");
    const auto builtIn = u"https://built-in.test"_s;
    QTest::newRow("built in") << u""_s << builtIn;
    QTest::newRow("https") << u"https://x.test:8443"_s << u"https://x.test:8443"_s;
    QTest::newRow("slash") << u"https://x.test/"_s << u"https://x.test/"_s;
    QTest::newRow("loopback") << u"http://127.0.0.1:80"_s << u"http://127.0.0.1:80"_s;
    QTest::newRow("localhost") << u"http://localhost:8080"_s << u"http://localhost:8080"_s;
    QTest::newRow("loopback v6") << u"http://[::1]:80"_s << u"http://[::1]:80"_s;
    QTest::newRow("plain http") << u"http://x.test"_s << u""_s;
    QTest::newRow("looks local") << u"http://localhost.x.test"_s << u""_s;
    QTest::newRow("path") << u"https://x.test/api"_s << u""_s;
    QTest::newRow("no host") << u"https://"_s << u""_s;
    QTest::newRow("no scheme") << u"x.test"_s << u""_s;
    QTest::newRow("file") << u"file:///etc"_s << u""_s;
    QTest::newRow("garbage") << u"https://[x"_s << u""_s;
}

void tst_LaunchOptions::backendAddresses()
{
    QFETCH(QString, environment);
    const auto url = backendAddress(environment, u"https://built-in.test"_s);
    QTEST(url ? url->toString() : QString(), "address");
}

void tst_LaunchOptions::deepLinks_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("recognition");
    QTest::newRow("exact") << u"navorin://shazam"_s << true;
    QTest::newRow("with a path") << u"navorin://shazam/x?y=1"_s << true;
    QTest::newRow("other host") << u"navorin://play"_s << false;
    QTest::newRow("other scheme") << u"https://shazam"_s << false;
    QTest::newRow("no host") << u"navorin:shazam"_s << false;
    QTest::newRow("nothing") << u""_s << false;
}

void tst_LaunchOptions::deepLinks()
{
    QFETCH(QString, address);
    QTEST(asksForRecognition(QUrl(address, QUrl::StrictMode)), "recognition");
}

QTEST_GUILESS_MAIN(tst_LaunchOptions)
#include "tst_LaunchOptions.moc"
