#include "Platform/Storage/SecretServiceStore.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QProcess>
#include <QTest>

#include <csignal>
#include <future>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using Status = SecureItemStatus;

namespace {

const SecureItem token{u"ir.navorin.NavorinRadio"_s, u"session_token"_s};
const auto secrets = u"org.freedesktop.secrets"_s;
const auto secretsPath = u"/org/freedesktop/secrets"_s;
const auto serviceInterface = u"org.freedesktop.Secret.Service"_s;
const auto startKeyring = "echo | gnome-keyring-daemon --foreground --unlock --components=secrets "
                          "--control-directory=\"$SESSION_DIR/keyring\" >/dev/null 2>&1 &\n"_ba;

struct Stopwatch
{
    std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();

    void restart() { *this = {}; }
    [[nodiscard]] auto elapsed() const { return std::chrono::steady_clock::now() - start; }
};

/// A private session without anything that starts by itself, and the view of another program into it.
class Session
{
public:
    explicit Session(const QStringList &options)
    {
        QStringList arguments = QStringList{u"--bare-bus"_s} + options;
        arguments << u"--"_s << u"sh"_s << u"-c"_s
                  << u"echo $DBUS_SESSION_BUS_ADDRESS; while read -r line; do eval \"$line\"; done"_s;
        m_process.start(QStringLiteral(NAVORIN_DESKTOP_SESSION), arguments);
        while (!m_process.canReadLine() && m_process.waitForReadyRead())
            ;
        address = m_process.readLine().trimmed();
        static int count = 0;
        m_name = u"onlooker-"_s + QString::number(++count);
        bus = QDBusConnection::connectToBus(QString::fromUtf8(address), m_name);
    }
    ~Session()
    {
        signalKeyring(SIGCONT);
        QDBusConnection::disconnectFromBus(m_name);
        m_process.closeWriteChannel();
        m_process.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(Session)

    void command(const QByteArray &line)
    {
        m_process.write(line);
        m_process.waitForBytesWritten();
    }

    QVariantList ask(const QString &service, const QString &path, const QString &interface,
                     const QString &method, const QVariantList &arguments) const
    {
        auto question = QDBusMessage::createMethodCall(service, path, interface, method);
        question.setArguments(arguments);
        return bus.call(question).arguments();
    }

    [[nodiscard]] bool hasKeyring() const
    {
        return ask(u"org.freedesktop.DBus"_s, u"/"_s, u"org.freedesktop.DBus"_s, u"NameHasOwner"_s, {secrets})
            .value(0)
            .toBool();
    }

    void signalKeyring(int signal) const
    {
        const auto pid = ask(u"org.freedesktop.DBus"_s, u"/"_s, u"org.freedesktop.DBus"_s,
                             u"GetConnectionUnixProcessID"_s, {secrets});
        if (pid.value(0).typeId() == QMetaType::UInt)
            ::kill(static_cast<pid_t>(pid[0].toUInt()), signal);
    }

    void lock() const
    {
        const QList<QDBusObjectPath> all{QDBusObjectPath(secretsPath + u"/collection/login"_s)};
        ask(secrets, secretsPath, serviceInterface, u"Lock"_s, {QVariant::fromValue(all)});
    }

    /// The paths of all items there are, whatever their attributes.
    [[nodiscard]] QStringList items() const
    {
        const auto answer =
            ask(secrets, secretsPath + u"/collection/login"_s, u"org.freedesktop.DBus.Properties"_s, u"Get"_s,
                {u"org.freedesktop.Secret.Collection"_s, u"Items"_s});
        const auto value = answer.value(0).value<QDBusVariant>().variant().value<QDBusArgument>();
        QStringList paths;
        for (const auto &path : qdbus_cast<QList<QDBusObjectPath>>(value))
            paths << path.path();
        return paths;
    }

    [[nodiscard]] QVariant itemProperty(const QString &property) const
    {
        const auto answer = ask(secrets, items().value(0), u"org.freedesktop.DBus.Properties"_s, u"Get"_s,
                                {u"org.freedesktop.Secret.Item"_s, property});
        return answer.value(0).value<QDBusVariant>().variant();
    }

    QByteArray address;
    QDBusConnection bus{QString()};

private:
    QProcess m_process;
    QString m_name;
};

/// The store as a caller meets it: not available is also what does not come in time.
class Client
{
public:
    explicit Client(const QByteArray &address, const SecretServiceStore::Limits &limits = {})
        : store(address, limits)
    {
    }

    Status perform(std::function<Status(SecureItems &)> operation)
    {
        const auto promise = std::make_shared<std::promise<Status>>();
        auto future = promise->get_future();
        store.post([promise, operation](SecureItems &items) { promise->set_value(operation(items)); });
        return store.settle() ? future.get() : Status::NotAvailable;
    }
    Status exists()
    {
        return perform([](auto &items) { return items.exists(token); });
    }
    Status remove()
    {
        return perform([](auto &items) { return items.remove(token); });
    }
    Status add(const QByteArray &data)
    {
        return perform([data](auto &items) { return items.add(token, data); });
    }
    Status update(const QByteArray &data)
    {
        return perform([data](auto &items) { return items.update(token, data); });
    }
    /// Null without success.
    QByteArray copy()
    {
        const auto data = std::make_shared<QByteArray>();
        const auto status = perform([data](auto &items) {
            const auto copy = items.copyMatching(token);
            *data = copy.data;
            return copy.status;
        });
        return status == Status::Success ? *data : QByteArray();
    }

    SecretServiceStore store;
};

} // namespace

class tst_SecretServiceStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qDBusRegisterMetaType<QList<QDBusObjectPath>>(); }
    void keepsItems();
    void lockedCollection();
    void nobodyThere();
    void keyringIsReplaced();
    void busDies();
    void hangs();
    void endsWhileServiceHangs();
};

void tst_SecretServiceStore::keepsItems()
{
    const Session session({u"--keyring"_s});
    const auto binary = "\xFF\0\xC0نشانه"_ba;
    {
        Client client(session.address);
        QCOMPARE(client.exists(), Status::ItemNotFound);
        QCOMPARE(client.update("x"_ba), Status::ItemNotFound);
        QCOMPARE(client.remove(), Status::ItemNotFound);
        QVERIFY(client.copy().isNull());
        QCOMPARE(client.add("first"_ba), Status::Success);
        QCOMPARE(client.add("second"_ba), Status::Success);
        QCOMPARE(client.copy(), "second"_ba);
        QCOMPARE(client.update(binary), Status::Success);
    }
    QCOMPARE(session.items().size(), 1);
    QCOMPARE(session.itemProperty(u"Label"_s).toString(), u"Navorin"_s);
    using Attributes = QMap<QString, QString>;
    qDBusRegisterMetaType<Attributes>();
    QCOMPARE(qdbus_cast<Attributes>(session.itemProperty(u"Attributes"_s)),
             (Attributes{{u"service"_s, token.service},
                         {u"account"_s, token.account},
                         {u"xdg:schema"_s, u"org.freedesktop.Secret.Generic"_s}}));
    Client later(session.address);
    QCOMPARE(later.copy(), binary);
    QCOMPARE(later.exists(), Status::Success);
    QCOMPARE(later.remove(), Status::Success);
    QVERIFY(session.items().isEmpty());
}

void tst_SecretServiceStore::lockedCollection()
{
    const Session session({u"--keyring"_s});
    Client client(session.address);
    QCOMPARE(client.add("kept"_ba), Status::Success);
    session.lock();
    Stopwatch clock;
    QVERIFY(client.copy().isNull());
    QCOMPARE(client.update("x"_ba), Status::NotAvailable);
    QCOMPARE(client.add("x"_ba), Status::NotAvailable);
    QCOMPARE(client.remove(), Status::NotAvailable);
    QCOMPARE(client.exists(), Status::Success);
    QVERIFY(clock.elapsed() < 1s);
    QCOMPARE(session.items().size(), 1);
}

void tst_SecretServiceStore::nobodyThere()
{
    const Session session({});
    for (const auto &address : {session.address, "unix:path=/nowhere"_ba, "nonsense"_ba, ""_ba}) {
        Client client(address);
        QCOMPARE(client.exists(), Status::NotAvailable);
        QCOMPARE(client.add("x"_ba), Status::NotAvailable);
        QVERIFY(client.copy().isNull() && client.store.settle());
    }
}

void tst_SecretServiceStore::keyringIsReplaced()
{
    Session session({u"--keyring"_s});
    Client client(session.address);
    QCOMPARE(client.add("before"_ba), Status::Success);
    session.signalKeyring(SIGKILL);
    QTRY_VERIFY(!session.hasKeyring());
    QVERIFY(client.copy().isNull());
    QCOMPARE(client.update("x"_ba), Status::NotAvailable);
    session.command(startKeyring);
    QTRY_VERIFY(session.hasKeyring());
    QCOMPARE(client.copy(), "before"_ba);

    // This time nobody has asked in between, so the session of the one before is still believed in.
    session.signalKeyring(SIGKILL);
    QTRY_VERIFY(!session.hasKeyring());
    session.command(startKeyring);
    QTRY_VERIFY(session.hasKeyring());
    QCOMPARE(client.add("after"_ba), Status::Success);
    QCOMPARE(session.items().size(), 1);
    QCOMPARE(client.copy(), "after"_ba);
}

void tst_SecretServiceStore::busDies()
{
    auto session = std::make_unique<Session>(QStringList{u"--keyring"_s});
    Client client(session->address);
    QCOMPARE(client.add("x"_ba), Status::Success);
    session.reset();
    QVERIFY(client.copy().isNull() && client.store.settle());
}

void tst_SecretServiceStore::hangs()
{
    const Session session({u"--keyring"_s});
    constexpr auto patience = 300ms;
    Client client(session.address, {.caller = patience, .service = 60s, .mistrust = 60s});
    QCOMPARE(client.add("first"_ba), Status::Success);
    session.signalKeyring(SIGSTOP);
    Stopwatch clock;
    QCOMPARE(client.update("older"_ba), Status::NotAvailable);
    QVERIFY(clock.elapsed() >= patience);
    clock.restart();
    QCOMPARE(client.exists(), Status::NotAvailable);
    QCOMPARE(client.add("newer"_ba), Status::NotAvailable);
    QVERIFY(clock.elapsed() < patience);
    session.signalKeyring(SIGCONT);
    QTRY_VERIFY(client.store.settle());
    QCOMPARE(client.copy(), "newer"_ba);
    QCOMPARE(session.items().size(), 1);

    // A service that answered is waited for again.
    session.signalKeyring(SIGSTOP);
    clock.restart();
    QVERIFY(client.copy().isNull() && clock.elapsed() >= patience);
}

void tst_SecretServiceStore::endsWhileServiceHangs()
{
    const Session session({u"--keyring"_s});
    session.signalKeyring(SIGSTOP);
    Stopwatch clock;
    const auto gone = std::make_shared<int>();
    {
        Client client(session.address, {.caller = 100ms, .service = 60s});
        for (int i = 0; i < 3; ++i)
            client.store.post([gone](SecureItems &items) { items.remove(token); });
    }
    QVERIFY(clock.elapsed() < 5s);
    QCOMPARE(gone.use_count(), 1L);
    // An operation that ran into its own limit does not win the service new trust.
    Client client(session.address, {.caller = 200ms, .service = 300ms, .mistrust = 60s});
    QCOMPARE(client.add("x"_ba), Status::NotAvailable);
    QTRY_VERIFY(client.store.settle());
    clock.restart();
    QCOMPARE(client.exists(), Status::NotAvailable);
    QVERIFY(clock.elapsed() < 200ms);
}

QTEST_GUILESS_MAIN(tst_SecretServiceStore)
#include "tst_SecretServiceStore.moc"
