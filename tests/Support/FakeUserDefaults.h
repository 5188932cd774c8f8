#pragma once

#include "Platform/Storage/UserDefaults.h"

#include <QHash>
#include <QStringList>

#include <functional>

namespace navorin {

/// Settings in memory. Keeps the order of the writes.
class FakeUserDefaults final : public UserDefaults
{
public:
    [[nodiscard]] QVariant object(const QString &key) const override { return values.value(key); }
    void setObject(const QString &key, const QVariant &value) override
    {
        values.insert(key, value);
        written.append(key);
        if (onWrite)
            onWrite(key);
    }

    QHash<QString, QVariant> values;
    QStringList written;
    std::function<void(const QString &key)> onWrite;
};

} // namespace navorin
