#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <string.h>

namespace navorin {

/// What addresses a generic password, and all that addresses it.
struct SecureItem
{
    QString service;
    QString account;
};

enum class SecureItemStatus {
    Success,
    ItemNotFound,
    NotAvailable ///< no store, a locked one, one that would have to ask the user, or no answer in time
};

/// The operations on generic passwords. Each waits for the store and gives up after a time, so they are not
/// for the UI thread: a `SecureItemStore` runs them where waiting is fine.
class SecureItems
{
public:
    struct Copy
    {
        SecureItemStatus status = SecureItemStatus::NotAvailable;
        QByteArray data; ///< any bytes; empty without success
    };

    virtual ~SecureItems() = default;

    [[nodiscard]] virtual Copy copyMatching(const SecureItem &item) = 0;
    /// Success also if the item is there but locked.
    [[nodiscard]] virtual SecureItemStatus exists(const SecureItem &item) = 0;
    /// Takes the place of an item that is there after all: a store that would not say so when it was asked
    /// must not end up with the older value, nor with two.
    virtual SecureItemStatus add(const SecureItem &item, const QByteArray &data) = 0;
    virtual SecureItemStatus update(const SecureItem &item, const QByteArray &data) = 0;
    virtual SecureItemStatus remove(const SecureItem &item) = 0;
};

/// Where passwords are kept: encrypted, outside the settings, across restarts.
///
/// A store may hang for most of a minute, while those who write to it have nothing to learn from the outcome.
/// So nothing here waits but settle(): works are done in the order in which they were posted, each as a
/// whole, and a later write wins however late the store wakes up. Any thread.
class SecureItemStore
{
public:
    using Work = std::function<void(SecureItems &)>;

    virtual ~SecureItemStore() = default;

    /// `work` runs at any time from now on, on any thread, or is destroyed without having run when the store
    /// goes first. It must not throw, nor use the store itself.
    virtual void post(Work work) = 0;

    /// Returns true when all that was posted before has run; false when that would take longer than a user
    /// notices. Made for the UI thread.
    virtual bool settle() = 0;
};

/// Overwrites the bytes if nobody shares them.
inline void wipe(QByteArray &bytes)
{
    if (bytes.isDetached())
        ::explicit_bzero(bytes.data(), static_cast<size_t>(bytes.size()));
    bytes.clear();
}

} // namespace navorin
