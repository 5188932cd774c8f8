#include "Platform/Storage/SecretServiceItems.h"

#include <utility>

namespace navorin {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto serviceName = "org.freedesktop.secrets";
constexpr auto servicePath = "/org/freedesktop/secrets";
constexpr auto defaultCollection = "/org/freedesktop/secrets/aliases/default";
constexpr auto serviceInterface = "org.freedesktop.Secret.Service";
constexpr auto collectionInterface = "org.freedesktop.Secret.Collection";
constexpr auto itemInterface = "org.freedesktop.Secret.Item";
constexpr auto promptInterface = "org.freedesktop.Secret.Prompt";
constexpr auto noPrompt = "/";

/// Makes `context` the one of this thread for a while.
class ContextOfThread
{
public:
    explicit ContextOfThread(GMainContext *context)
        : m_context(context)
    {
        g_main_context_push_thread_default(m_context);
        while (g_main_context_iteration(m_context, FALSE))
            ;
    }
    ~ContextOfThread() { g_main_context_pop_thread_default(m_context); }
    Q_DISABLE_COPY_MOVE(ContextOfThread)

private:
    GMainContext *m_context;
};

void addAddress(GVariantBuilder &attributes, const SecureItem &item)
{
    g_variant_builder_add(&attributes, "{ss}", "service", item.service.toUtf8().constData());
    g_variant_builder_add(&attributes, "{ss}", "account", item.account.toUtf8().constData());
}

GVariant *propertiesOf(const SecureItem &item)
{
    GVariantBuilder attributes;
    g_variant_builder_init(&attributes, G_VARIANT_TYPE("a{ss}"));
    addAddress(attributes, item);
    g_variant_builder_add(&attributes, "{ss}", "xdg:schema", "org.freedesktop.Secret.Generic");

    GVariantBuilder properties;
    g_variant_builder_init(&properties, G_VARIANT_TYPE("a{sv}"));
    g_variant_builder_add(&properties, "{sv}", "org.freedesktop.Secret.Item.Label",
                          g_variant_new_string("Navorin"));
    g_variant_builder_add(&properties, "{sv}", "org.freedesktop.Secret.Item.Attributes",
                          g_variant_builder_end(&attributes));
    return g_variant_builder_end(&properties);
}

QList<QByteArray> objectPaths(GVariant *answer, gsize index)
{
    const GlibPointer<GVariant> list(g_variant_get_child_value(answer, index));
    QList<QByteArray> paths;
    for (gsize i = 0; i < g_variant_n_children(list.get()); ++i) {
        const char *path = nullptr;
        g_variant_get_child(list.get(), i, "&o", &path);
        paths.append(path);
    }
    return paths;
}

QByteArray objectPath(GVariant *answer, gsize index)
{
    const char *path = nullptr;
    g_variant_get_child(answer, index, "&o", &path);
    return path;
}

GVariant *byteArray(const QByteArray &bytes)
{
    return g_variant_new_fixed_array(G_VARIANT_TYPE_BYTE, bytes.constData(), static_cast<gsize>(bytes.size()),
                                     1);
}

} // namespace

struct SecretServiceItems::CallFailed
{
    /// Takes `error` over.
    explicit CallFailed(GError *error)
    {
        final = g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED);
        timedOut = g_error_matches(error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT) ||
                   g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_NO_REPLY) ||
                   g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_TIMEOUT) ||
                   g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_TIMED_OUT);
        g_error_free(error);
    }
    CallFailed() = default;

    bool timedOut = true;
    bool final = false; ///< asking again is not wanted
};

SecretServiceItems::SecretServiceItems(QByteArray busAddress, std::chrono::milliseconds limit)
    : m_busAddress(std::move(busAddress))
    , m_limit(limit)
{
}

SecretServiceItems::~SecretServiceItems()
{
    hangUp();
}

void SecretServiceItems::cancel()
{
    g_cancellable_cancel(m_cancellable.get());
}

/// Does it once more over a new connection if the one in use came from an earlier operation: the keyring or
/// the bus may have been replaced since.
SecureItemStatus SecretServiceItems::attempt(const Operation &operation)
{
    const ContextOfThread context(m_context.get());
    m_deadline = Clock::now() + m_limit;
    for (;;) {
        const bool fresh = !m_connection;
        try {
            connect();
            m_timedOut = false;
            return operation();
        } catch (const CallFailed &failure) {
            m_timedOut = failure.timedOut;
            // A connection on which somebody is merely slow keeps the calls in their order.
            if (m_timedOut)
                return SecureItemStatus::NotAvailable;
            hangUp();
            if (fresh || failure.final)
                return SecureItemStatus::NotAvailable;
        }
    }
}

int SecretServiceItems::remainingMilliseconds() const
{
    const auto remaining = std::chrono::ceil<std::chrono::milliseconds>(m_deadline - Clock::now());
    if (remaining.count() <= 0)
        throw CallFailed();
    return static_cast<int>(remaining.count());
}

void SecretServiceItems::connect()
{
    if (m_connection && !g_dbus_connection_is_closed(m_connection.get()))
        return;
    hangUp();
    constexpr auto flags = static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                             G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    GError *error = nullptr;
    m_connection.reset(g_dbus_connection_new_for_address_sync(m_busAddress.constData(), flags, nullptr,
                                                              m_cancellable.get(), &error));
    if (!m_connection)
        throw CallFailed(error);
}

void SecretServiceItems::openSession()
{
    if (!m_session.isEmpty())
        return;
    const auto answer = call(servicePath, serviceInterface, "OpenSession",
                             g_variant_new("(sv)", "plain", g_variant_new_string("")), "(vo)");
    m_session = objectPath(answer.get(), 1);
}

void SecretServiceItems::hangUp()
{
    m_session.clear();
    if (m_connection)
        g_dbus_connection_close(m_connection.get(), nullptr, nullptr, nullptr);
    m_connection.reset();
}

GlibPointer<GVariant> SecretServiceItems::call(const QByteArray &path, const char *interface,
                                               const char *method, GVariant *arguments,
                                               const char *answerType)
{
    const GlibPointer<GVariant> kept(arguments ? g_variant_ref_sink(arguments) : nullptr);
    GError *error = nullptr;
    GlibPointer<GVariant> answer(
        g_dbus_connection_call_sync(m_connection.get(), serviceName, path.constData(), interface, method,
                                    arguments, G_VARIANT_TYPE(answerType), G_DBUS_CALL_FLAGS_NONE,
                                    remainingMilliseconds(), m_cancellable.get(), &error));
    if (!answer)
        throw CallFailed(error);
    return answer;
}

SecretServiceItems::Matches SecretServiceItems::search(const SecureItem &item)
{
    GVariantBuilder attributes;
    g_variant_builder_init(&attributes, G_VARIANT_TYPE("a{ss}"));
    addAddress(attributes, item);
    const auto answer =
        call(servicePath, serviceInterface, "SearchItems", g_variant_new("(a{ss})", &attributes), "(aoao)");
    return {objectPaths(answer.get(), 0), objectPaths(answer.get(), 1)};
}

/// The value as it crosses the bus in the session.
GVariant *SecretServiceItems::sealed(const QByteArray &data)
{
    openSession();
    return g_variant_new("(o@ay@ays)", m_session.constData(), byteArray({}), byteArray(data), "text/plain");
}

SecureItemStatus SecretServiceItems::afterPrompt(const QByteArray &prompt)
{
    if (prompt == noPrompt)
        return SecureItemStatus::Success;
    call(prompt, promptInterface, "Dismiss", nullptr, "()");
    return SecureItemStatus::NotAvailable;
}

SecureItems::Copy SecretServiceItems::copyMatching(const SecureItem &item)
{
    Copy copy;
    copy.status = attempt([this, &item, &copy] {
        const auto matches = search(item);
        if (matches.unlocked.isEmpty())
            return matches.locked.isEmpty() ? SecureItemStatus::ItemNotFound : SecureItemStatus::NotAvailable;
        openSession();
        const auto answer = call(matches.unlocked.first(), itemInterface, "GetSecret",
                                 g_variant_new("(o)", m_session.constData()), "((oayays))");
        const GlibPointer<GVariant> secret(g_variant_get_child_value(answer.get(), 0));
        const GlibPointer<GVariant> value(g_variant_get_child_value(secret.get(), 2));
        copy.data = QByteArray(static_cast<const char *>(g_variant_get_data(value.get())),
                               static_cast<qsizetype>(g_variant_get_size(value.get())));
        return SecureItemStatus::Success;
    });
    return copy;
}

SecureItemStatus SecretServiceItems::exists(const SecureItem &item)
{
    return attempt([this, &item] {
        const auto matches = search(item);
        return matches.unlocked.isEmpty() && matches.locked.isEmpty() ? SecureItemStatus::ItemNotFound
                                                                      : SecureItemStatus::Success;
    });
}

SecureItemStatus SecretServiceItems::add(const SecureItem &item, const QByteArray &data)
{
    return attempt([this, &item, &data] {
        constexpr gboolean replace = TRUE;
        auto *secret = sealed(data);
        const auto answer =
            call(defaultCollection, collectionInterface, "CreateItem",
                 g_variant_new("(@a{sv}@(oayays)b)", propertiesOf(item), secret, replace), "(oo)");
        return afterPrompt(objectPath(answer.get(), 1));
    });
}

SecureItemStatus SecretServiceItems::update(const SecureItem &item, const QByteArray &data)
{
    return attempt([this, &item, &data] {
        const auto matches = search(item);
        if (matches.unlocked.isEmpty())
            return matches.locked.isEmpty() ? SecureItemStatus::ItemNotFound : SecureItemStatus::NotAvailable;
        for (const auto &path : matches.unlocked)
            call(path, itemInterface, "SetSecret", g_variant_new("(@(oayays))", sealed(data)), "()");
        return SecureItemStatus::Success;
    });
}

SecureItemStatus SecretServiceItems::remove(const SecureItem &item)
{
    return attempt([this, &item] {
        const auto matches = search(item);
        auto status = (matches.unlocked + matches.locked).isEmpty() ? SecureItemStatus::ItemNotFound
                                                                    : SecureItemStatus::Success;
        for (const auto &path : matches.unlocked + matches.locked) {
            const auto answer = call(path, itemInterface, "Delete", nullptr, "(o)");
            if (afterPrompt(objectPath(answer.get(), 0)) != SecureItemStatus::Success)
                status = SecureItemStatus::NotAvailable;
        }
        return status;
    });
}

} // namespace navorin
