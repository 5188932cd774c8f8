#pragma once

#include <QString>
#include <QVariant>

#include <optional>

namespace navorin {

/// The user's settings: typed values by dotted key. What is written reads back with its type after a restart:
/// a Bool as a Bool, a list of one or of none as a list. Writes have no failure path; they reach the disk
/// soon after, and at the latest when the object is destroyed. UI thread only.
class UserDefaults
{
public:
    virtual ~UserDefaults() = default;

    /// The value of `key` as bool, double, QString or QVariantList; invalid if there is none.
    [[nodiscard]] virtual QVariant object(const QString &key) const = 0;
    /// An invalid value removes the key.
    virtual void setObject(const QString &key, const QVariant &value) = 0;

    /// The value if it is a text, else absent.
    [[nodiscard]] std::optional<QString> string(const QString &key) const;
    /// The value if it is a list, else absent.
    [[nodiscard]] std::optional<QVariantList> array(const QString &key) const;
    void setBool(const QString &key, bool value) { setObject(key, value); }
};

} // namespace navorin
