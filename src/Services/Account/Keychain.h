#pragma once

#include "Platform/Storage/SecureItemStore.h"
#include "Services/SharedInstance.h"

#include <QFuture>
#include <QHash>

#include <optional>

namespace navorin {

/// Texts that the desktop keeps encrypted, one for each key, across restarts. Every failure is silent: what
/// cannot be read reads as none, what cannot be stored is lost with the process. UI thread only.
///
/// What is set is what get() gives next, although set() does not wait for the store. At the start of the
/// program use getSoon(), or warmUp() early and get() later, and the first frame waits for nobody.
class Keychain
{
public:
    using Reading = QFuture<std::optional<QString>>;

    /// None if there is no such text, if the bytes are no UTF-8, or if the store does not answer in the time
    /// of `SecureItemStore::settle`.
    [[nodiscard]] static std::optional<QString> get(const QString &key);

    /// Stores or replaces; no value and the empty one delete.
    static void set(const std::optional<QString> &value, const QString &key);

    /// The same text as get(), without waiting: it always arrives, from a store that hangs after half a
    /// minute, and with what was there before any set() that came later. So whoever awaits it looks on
    /// resuming whether something has been set since.
    [[nodiscard]] static Reading getSoon(const QString &key);

    /// Starts to read, so that the next get() or getSoon() of this key finds the answer or waits for the
    /// remainder only. A set() in between is honoured.
    static void warmUp(const QString &key);

private:
    friend class NavorinRadioApp;
    friend struct TestAccess;

    explicit Keychain(SecureItemStore &store);
    static SharedInstance<Keychain> &instance();

    [[nodiscard]] Reading startReading(const QString &key) const;
    [[nodiscard]] Reading takeReading(const QString &key);

    SecureItemStore &m_store;
    QHash<QString, Reading> m_warm;
};

} // namespace navorin
