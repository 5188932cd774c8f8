#include "Platform/Desktop/DesktopApplication.h"
#include "Platform/Desktop/PrivateBus.h"
#include "Platform/Desktop/SystemLog.h"

#include <QDBusVirtualObject>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Owns the name, and answers nothing.
class HangingApplication final : public QDBusVirtualObject
{
public:
    [[nodiscard]] QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &, const QDBusConnection &) override { return true; }
};

} // namespace

class tst_DesktopApplication : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_bus.emplace(); }
    void cleanup() { m_bus.reset(); }

    void handsOver();
    void theNextOneAfterAnEnd();
    void anOwnerThatHangs();
    void noBus();
    void systemLog();

private:
    using Start = DesktopApplication::Start;

    /// Another start of the program, while this one's event loop turns.
    Start startAnother(const QStringList &addresses, std::chrono::milliseconds patience = 5s)
    {
        const auto connection = m_bus->connect();
        auto outcome = Start::GoesOn;
        const std::unique_ptr<QThread> process(QThread::create([&] {
            DesktopApplication other(connection);
            outcome = other.start(addresses, patience);
        }));
        process->start();
        [&] { QTRY_VERIFY(process->isFinished()); }();
        return outcome;
    }

    std::optional<PrivateBus> m_bus;
};

void tst_DesktopApplication::handsOver()
{
    DesktopApplication first(m_bus->connect());
    QCOMPARE(first.start({}), Start::GoesOn);
    QStringList asked;
    first.setHooks({.activate = [&] { asked << u"activate"_s; },
                    .open = [&](const QStringList &all) { asked << u"open "_s + all.join(u' '); },
                    .activateAction = [&](const QString &name) { asked << u"action "_s + name; }});
    qputenv("XDG_ACTIVATION_TOKEN", "from the launcher");
    for (const auto &addresses : {QStringList(), {u"navorin://shazam"_s}, {u"NAVORIN://Shazam/%zz"_s}})
        QCOMPARE(startAnother(addresses), Start::HandedOver);
    QCOMPARE(asked, (QStringList{u"activate"_s, u"open navorin://shazam"_s,
                                 u"open NAVORIN://Shazam/%zz"_s})); // as it was written
    qunsetenv("XDG_ACTIVATION_TOKEN");

    auto action = QDBusMessage::createMethodCall(DesktopApplication::busName, DesktopApplication::objectPath,
                                                 ApplicationAdaptor::interfaceName, u"ActivateAction"_s);
    const QVariantMap fromThePanel{{u"activation-token"_s, u"from the panel"_s}};
    const auto answer =
        ask(m_bus->connect(), action << u"shazam"_s << QVariant(QVariantList()) << fromThePanel);
    QCOMPARE(answer.type(), QDBusMessage::ReplyMessage);
    QCOMPARE(asked.last(), u"action shazam"_s);
    QCOMPARE(qgetenv("XDG_ACTIVATION_TOKEN"), "from the panel"_ba);
    qunsetenv("XDG_ACTIVATION_TOKEN");
}

void tst_DesktopApplication::theNextOneAfterAnEnd()
{
    DesktopApplication first(m_bus->connect());
    QCOMPARE(first.start({}), Start::GoesOn);
    first.release();
    QCOMPARE(startAnother({}), Start::GoesOn);
}

void tst_DesktopApplication::anOwnerThatHangs()
{
    HangingApplication hanging;
    auto connection = m_bus->connect();
    QVERIFY(connection.registerService(DesktopApplication::busName));
    QVERIFY(connection.registerVirtualObject(DesktopApplication::objectPath, &hanging));
    QCOMPARE(startAnother({}, 50ms), Start::Unanswered);
}

void tst_DesktopApplication::noBus()
{
    DesktopApplication alone(QDBusConnection(u"none"_s));
    QCOMPARE(alone.start({u"navorin://shazam"_s}), Start::GoesOn);
}

void tst_DesktopApplication::systemLog()
{
    const QTemporaryDir folder;
    const auto path = folder.filePath(u"log"_s).toUtf8();
    SyslogSocket log(u"ir.navorin.NavorinRadio"_s, u"shazam"_s, path);
    log.write(SystemLog::Level::Info, u"nobody listens"_s);

    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.constData(), std::size_t(path.size()));
    const int daemon = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK, 0);
    QCOMPARE(::bind(daemon, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
    log.write(SystemLog::Level::Error, u"درست %1"_s);
    std::array<char, 500> line = {};
    QVERIFY(::recv(daemon, line.data(), line.size() - 1, 0) > 0);
    const auto process = QByteArray::number(QCoreApplication::applicationPid());
    QCOMPARE(QByteArray(line.data()), "<11>ir.navorin.NavorinRadio["_ba + process + "]: [shazam] درست %1"_ba);
    for (int i = 0; i < 5000; ++i)
        log.write(SystemLog::Level::Info, u"more than anybody reads"_s); // lost, and not waited for
    ::close(daemon);
}

QTEST_GUILESS_MAIN(tst_DesktopApplication)
#include "tst_DesktopApplication.moc"
