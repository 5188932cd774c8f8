#include "Platform/Storage/SettingsUserDefaults.h"
#include "Support/ManualMainQueue.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

void writeFile(const QString &path, const QByteArray &data)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(data), data.size());
}

} // namespace

class tst_UserDefaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void typesSurviveARestart_data();
    void typesSurviveARestart();
    void handWrittenValues();
    void damagedFile();
    void twoProcessesShareASuite();

private:
    std::optional<QTemporaryDir> m_config;
    QString m_path;
    ManualMainQueue m_queue;
};

void tst_UserDefaults::init()
{
    m_config.emplace();
    qputenv("XDG_CONFIG_HOME", m_config->path().toUtf8());
    m_path = m_config->filePath(u"navorin/navorin.conf"_s);
}

void tst_UserDefaults::typesSurviveARestart_data()
{
    QTest::addColumn<QVariant>("value");
    const auto texts = {
        u""_s,          u"راک، «تخت»"_s,       u"true"_s,        u"12"_s,         u"[1]"_s,        u"null"_s,
        u"a, b; c=d"_s, u"\"quoted\\\"\n\t"_s, u"@Variant(x)"_s, u"  blanks  "_s, u"%20 \u200c🎵"_s};
    for (const auto &text : texts)
        QTest::newRow(qUtf8Printable(u"text "_s + text)) << QVariant(text);
    QTest::newRow("true") << QVariant(true);
    QTest::newRow("false") << QVariant(false);
    QTest::newRow("whole") << QVariant(5.0);
    QTest::newRow("time stamp") << QVariant(1761234567.123456);
    QTest::newRow("small") << QVariant(-1.25e-300);
    QTest::newRow("float") << QVariant(double(0.1F));
    QTest::newRow("empty list") << QVariant(QVariantList());
    QTest::newRow("list of one") << QVariant(QVariantList{1.5});
    QTest::newRow("gains") << QVariant(QVariantList{-12.0, double(0.1F), 0.0, 3.0, 12.0});
    QTest::newRow("mixed list") << QVariant(QVariantList{true, u"a,b"_s, QVariantList{u"c"_s}});
}

void tst_UserDefaults::typesSurviveARestart()
{
    QFETCH(QVariant, value);
    {
        SettingsUserDefaults defaults(m_queue);
        defaults.setObject(u"eq.value"_s, value);
        QCOMPARE(defaults.object(u"eq.value"_s), value);
    }
    const SettingsUserDefaults defaults(m_queue);
    QCOMPARE(defaults.object(u"eq.value"_s), value);
    QCOMPARE(defaults.object(u"eq.value"_s).typeId(), value.typeId());
    QCOMPARE(defaults.string(u"eq.value"_s).has_value(), value.typeId() == QMetaType::QString);
    QCOMPARE(defaults.array(u"eq.value"_s).has_value(), value.typeId() == QMetaType::QVariantList);
}

void tst_UserDefaults::handWrittenValues()
{
    const std::initializer_list<std::pair<QByteArray, QVariant>> values{
        {"true"_ba, true},    {"[1, 2.5]"_ba, QVariantList{1.0, 2.5}},
        {"راک"_ba, u"راک"_s}, {"a,b"_ba, u"a,b"_s},
        {"1,2"_ba, u"1,2"_s}, {"[1"_ba, u"[1"_s},
    };
    for (const auto &[written, value] : values) {
        init();
        QDir().mkpath(m_config->filePath(u"navorin"_s));
        writeFile(m_path, "[General]\neq.value="_ba + written + "\n"_ba);
        QCOMPARE(SettingsUserDefaults(m_queue).object(u"eq.value"_s), value);
    }
}

void tst_UserDefaults::damagedFile()
{
    for (const bool writable : {true, false}) {
        init();
        QDir().mkpath(writable ? m_config->filePath(u"navorin"_s) : m_path); // a folder in the file's place
        if (writable)
            writeFile(m_path, QByteArray("\0\xff\xfe[[[=\n\"\\x", 12) + QByteArray(5000, '\x80'));
        {
            SettingsUserDefaults defaults(m_queue);
            QVERIFY(!defaults.object(u"eq.enabled"_s).isValid());
            defaults.setBool(u"eq.enabled"_s, true);
            m_queue.advance(1s);
            QCOMPARE(defaults.object(u"eq.enabled"_s), QVariant(true));
        }
        QCOMPARE(SettingsUserDefaults(m_queue).object(u"eq.enabled"_s).isValid(), writable);
    }
}

void tst_UserDefaults::twoProcessesShareASuite()
{
    const auto suite = u"group.suite"_s;
    SettingsUserDefaults app(m_queue, suite);
    for (int i = 0; i < 1000; ++i)
        app.setObject(u"other"_s, i);
    QCOMPARE(m_queue.timerCount(), 1);
    m_queue.advance(1s);
    for (const auto stamp : {1.0, 2.0}) {
        SettingsUserDefaults(m_queue, suite).setObject(u"at"_s, stamp);
        QTRY_COMPARE(app.object(u"at"_s), QVariant(stamp));
        app.setObject(u"at"_s, {});
        m_queue.advance(1s);
        QTRY_VERIFY(!SettingsUserDefaults(m_queue, suite).object(u"at"_s).isValid());
    }
    QCOMPARE(SettingsUserDefaults(m_queue, suite).object(u"other"_s), QVariant(999.0));
}

QTEST_GUILESS_MAIN(tst_UserDefaults)
#include "tst_UserDefaults.moc"
