#include "Services/Equaliser/Equalizer.h"

#include "Platform/Storage/UserDefaults.h"
#include "Services/Equaliser/EqSnapshotStore.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

const QString enabledKey = u"eq.enabled"_s;
const QString presetKey = u"eq.preset"_s;
const QString gainsKey = u"eq.gains"_s;

bool savedBool(const UserDefaults &defaults, const QString &key)
{
    const QVariant value = defaults.object(key);
    return value.typeId() == QMetaType::Bool && value.toBool();
}

std::optional<float> number(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Double:
    case QMetaType::Float:
    case QMetaType::Int:
    case QMetaType::LongLong:
        break;
    default:
        return {};
    }
    const float converted = value.toFloat();
    return std::isfinite(converted) ? std::optional(converted) : std::nullopt;
}

EqGains savedGains(const UserDefaults &defaults)
{
    const auto saved = defaults.array(gainsKey);
    if (!saved || saved->size() != qsizetype(eqBandCount))
        return {};
    EqGains gains;
    for (std::size_t band = 0; band < eqBandCount; ++band) {
        const auto gain = number(saved->at(qsizetype(band)));
        if (!gain)
            return {};
        gains[band] = *gain;
    }
    return gains;
}

QVariantList asList(const EqGains &gains)
{
    QVariantList list;
    for (const float gain : gains)
        list.append(double(gain));
    return list;
}

} // namespace

Equalizer &Equalizer::shared()
{
    return instance().get();
}

SharedInstance<Equalizer> &Equalizer::instance()
{
    static SharedInstance<Equalizer> instance;
    return instance;
}

Equalizer::Equalizer(UserDefaults &defaults)
    : m_defaults(defaults)
    , m_enabled(savedBool(defaults, enabledKey))
    , m_selectedPreset(defaults.string(presetKey).value_or(EQPreset::all.constFirst().name))
    , m_gains(savedGains(defaults))
{
    publish();
}

void Equalizer::setEnabled(bool enabled)
{
    const bool changed = std::exchange(m_enabled, enabled) != enabled;
    persist();
    if (changed)
        Q_EMIT enabledChanged();
}

void Equalizer::setSelectedPreset(QString name)
{
    const bool changed = m_selectedPreset != name;
    m_selectedPreset = std::move(name);
    persist();
    if (changed)
        Q_EMIT selectedPresetChanged();
}

void Equalizer::setGains(const EqGains &gains)
{
    const bool changed = std::exchange(m_gains, gains) != gains;
    persist();
    if (changed)
        Q_EMIT gainsChanged();
}

void Equalizer::applyPreset(const EQPreset &preset)
{
    setSelectedPreset(preset.name);
    setGains(preset.gains);
    setEnabled(true);
}

void Equalizer::setGain(int index, float value)
{
    EqGains changed = m_gains;
    if (index < 0 || std::size_t(index) >= changed.size())
        qFatal("the equaliser has no band %d", index);
    changed[std::size_t(index)] = std::clamp(value, eqLowestGain, eqHighestGain);
    setGains(changed);
    setSelectedPreset(EQPreset::customName);
}

void Equalizer::persist()
{
    m_defaults.setBool(enabledKey, m_enabled);
    m_defaults.setObject(presetKey, m_selectedPreset);
    m_defaults.setObject(gainsKey, asList(m_gains));
    publish();
}

void Equalizer::publish() const
{
    eqSnapshotStore().write(m_enabled, m_gains);
}

} // namespace navorin
