#pragma once

#include "Platform/Storage/GlibPointers.h"
#include "Platform/Storage/SecureItemStore.h"

#include <QList>

#include <chrono>

namespace navorin {

/// The item operations over `org.freedesktop.secrets` on a bus connection of its own, which a keyring, a bus
/// or another part of the program may not take down with it. One thread at a time, except for cancel().
///
/// The calls are made here, one by one, because libsecret's own operations show prompts and cannot be told
/// how long to wait; libsecret does what is hard, the session in which values cross the bus encrypted. A
/// prompt is dismissed unseen.
class SecretServiceItems final : public SecureItems
{
public:
    /// `limit` is for one operation, on a bus that answers.
    SecretServiceItems(QByteArray busAddress, std::chrono::milliseconds limit);
    ~SecretServiceItems() override;
    Q_DISABLE_COPY_MOVE(SecretServiceItems)

    [[nodiscard]] Copy copyMatching(const SecureItem &item) override;
    [[nodiscard]] SecureItemStatus exists(const SecureItem &item) override;
    SecureItemStatus add(const SecureItem &item, const QByteArray &data) override;
    SecureItemStatus update(const SecureItem &item, const QByteArray &data) override;
    SecureItemStatus remove(const SecureItem &item) override;

    /// Ends the operation that waits and every later one. Any thread.
    void cancel();
    /// The last operation ended because nobody answered.
    [[nodiscard]] bool timedOut() const { return m_timedOut; }

private:
    struct CallFailed;
    struct Matches
    {
        QList<QByteArray> unlocked; ///< object paths
        QList<QByteArray> locked;
    };
    using Operation = std::function<SecureItemStatus()>;

    SecureItemStatus attempt(const Operation &operation);
    [[nodiscard]] int remainingMilliseconds() const;
    void connect();
    void openSession();
    void hangUp();
    /// Takes `arguments` over. Throws CallFailed.
    GlibPointer<GVariant> call(const QByteArray &path, const char *interface, const char *method,
                               GVariant *arguments, const char *answerType);
    [[nodiscard]] Matches search(const SecureItem &item);
    [[nodiscard]] GVariant *sealed(const QByteArray &data);
    /// What a call that gave this prompt has achieved.
    SecureItemStatus afterPrompt(const QByteArray &prompt);

    const QByteArray m_busAddress;
    const std::chrono::milliseconds m_limit;
    const GlibPointer<GCancellable> m_cancellable{g_cancellable_new()};
    const GlibPointer<GMainContext> m_context{
        g_main_context_new()}; ///< keeps GLib's signals off the UI thread
    GlibPointer<GDBusConnection> m_connection;
    QByteArray m_session; ///< object path; opened by the first operation that needs it
    std::chrono::steady_clock::time_point m_deadline;
    bool m_timedOut = false;
};

} // namespace navorin
