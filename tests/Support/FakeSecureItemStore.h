#pragma once

#include "Platform/Storage/SecureItemStore.h"

#include <QHash>
#include <QStringList>

#include <deque>
#include <utility>

namespace navorin {

/// Passwords in memory by "service/account". Works run as they are posted, or, held back, when a test says
/// so.
class FakeSecureItemStore final : public SecureItemStore, private SecureItems
{
public:
    using Status = SecureItemStatus;

    void post(Work work) override
    {
        works.push_back(std::move(work));
        if (!hangs)
            wakeUp();
    }
    bool settle() override
    {
        ++settled;
        return works.empty();
    }

    void wakeUp()
    {
        hangs = false;
        while (!works.empty()) {
            std::exchange(works.front(), nullptr)(*this);
            works.pop_front();
        }
    }

    QHash<QString, QByteArray> items;
    bool available = true;
    bool hangs = false;
    QStringList asked; ///< the names of the operations, in order
    int settled = 0;
    std::deque<Work> works;

private:
    Copy copyMatching(const SecureItem &item) override
    {
        const auto status = ask(u"copyMatching", item);
        return {status, status == Status::Success ? items.value(name(item)) : QByteArray()};
    }
    Status exists(const SecureItem &item) override { return ask(u"exists", item); }
    Status add(const SecureItem &item, const QByteArray &data) override
    {
        asked << QStringLiteral("add");
        if (available)
            items.insert(name(item), QByteArray(data.constData(), data.size()));
        return available ? Status::Success : Status::NotAvailable;
    }
    Status update(const SecureItem &item, const QByteArray &data) override
    {
        const auto status = ask(u"update", item);
        if (status == Status::Success)
            items.insert(name(item), QByteArray(data.constData(), data.size()));
        return status;
    }
    Status remove(const SecureItem &item) override
    {
        const auto status = ask(u"remove", item);
        if (status == Status::Success)
            items.remove(name(item));
        return status;
    }

    Status ask(QStringView operation, const SecureItem &item)
    {
        asked << operation.toString();
        if (!available)
            return Status::NotAvailable;
        return items.contains(name(item)) ? Status::Success : Status::ItemNotFound;
    }
    static QString name(const SecureItem &item) { return item.service + u'/' + item.account; }
};

} // namespace navorin
