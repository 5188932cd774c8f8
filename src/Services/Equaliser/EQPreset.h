#pragma once

#include "Services/Equaliser/EqBands.h"

#include <QHashFunctions>
#include <QList>
#include <QString>

namespace navorin {

/// A named set of gains. The name is its identity.
struct EQPreset
{
    QString name;
    EqGains gains{};

    /// The presets of the menu, in its order.
    static const QList<EQPreset> all;
    /// The name of the settings after a change by hand; none of `all`.
    static const QString customName;

    [[nodiscard]] QString id() const { return name; }

    bool operator==(const EQPreset &) const = default;
};

[[nodiscard]] size_t qHash(const EQPreset &preset, size_t seed = 0) noexcept;

} // namespace navorin
