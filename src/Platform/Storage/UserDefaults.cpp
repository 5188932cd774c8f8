#include "Platform/Storage/UserDefaults.h"

namespace navorin {

std::optional<QString> UserDefaults::string(const QString &key) const
{
    const auto value = object(key);
    if (value.typeId() != QMetaType::QString)
        return {};
    return value.toString();
}

std::optional<QVariantList> UserDefaults::array(const QString &key) const
{
    const auto value = object(key);
    if (value.typeId() != QMetaType::QVariantList)
        return {};
    return value.toList();
}

} // namespace navorin
