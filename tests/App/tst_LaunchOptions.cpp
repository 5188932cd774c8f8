#include "LaunchOptions.h"

#include <QTest>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

class tst_LaunchOptions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void parsing();
    void backendAddresses();
    void deepLinks();
};

void tst_LaunchOptions::parsing()
{
    const auto options = LaunchOptions::parse({u"--demo"_s, u"--debug-sync"_s, u"navorin://shazam"_s});
    QVERIFY(options.demo && options.debugSync && !options.debugPlayer && !options.noCover && !options.help);
    QCOMPARE(options.address, u"navorin://shazam"_s);
    QVERIFY(options.unknown.isEmpty());
    QCOMPARE(LaunchOptions::parse({u"--Demo"_s, u"x"_s}).unknown, u"--Demo"_s);
    QCOMPARE(LaunchOptions::parse({u"stray"_s}).unknown, u"stray"_s);
    QVERIFY(!LaunchOptions::parse({u"--demo=1"_s}).demo);
    QCOMPARE(LaunchOptions::parse({u"--intent"_s, u"shazam"_s}).intent, u"shazam"_s);
    for (const auto &wrong : {QStringList{u"--intent"_s}, QStringList{u"--intent"_s, u"SHAZAM"_s}})
        QCOMPARE(LaunchOptions::parse(wrong).unknown, u"--intent"_s);
}

void tst_LaunchOptions::backendAddresses()
{
    const auto builtIn = u"https://built-in.test"_s;
    QCOMPARE(backendAddress({}, builtIn), QUrl(builtIn));
    for (const auto &good : {u"https://x.test:8443"_s, u"https://x.test/"_s, u"http://127.0.0.1:80"_s,
                             u"http://localhost:8080"_s, u"http://[::1]:80"_s})
        QCOMPARE(backendAddress(good, builtIn), QUrl(good));
    for (const auto &bad : {u"http://x.test"_s, u"http://localhost.x.test"_s, u"https://x.test/api"_s,
                            u"https://"_s, u"x.test"_s, u"file:///etc"_s, u"https://[x"_s})
        QVERIFY2(!backendAddress(bad, builtIn), qPrintable(bad));
}

void tst_LaunchOptions::deepLinks()
{
    for (const auto &good : {u"navorin://shazam"_s, u"navorin://shazam/x?y=1"_s, u"navorin://a@shazam:1"_s})
        QVERIFY2(asksForRecognition(good), qPrintable(good));
    for (const auto &bad : {u"navorin://play"_s, u"navorin://shazam.example"_s, u"navorin://shazam@play"_s,
                            u"navorin://Shazam"_s, u"NAVORIN://shazam"_s, u"https://shazam"_s,
                            u"navorin:///shazam"_s, u"navorin://shazam/%zz"_s, u"navorin:shazam"_s, u""_s})
        QVERIFY2(!asksForRecognition(bad), qPrintable(bad));
}

QTEST_GUILESS_MAIN(tst_LaunchOptions)
#include "tst_LaunchOptions.moc"
