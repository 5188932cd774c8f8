#include "Services/Equaliser/EQPreset.h"

namespace navorin {

using namespace Qt::Literals::StringLiterals;

const QList<EQPreset> EQPreset::all{
    {u"تخت"_s, {0, 0, 0, 0, 0}},           {u"پاپ"_s, {-1, 2, 4, 2, -1}},  {u"راک"_s, {4, 2, -2, 3, 4}},
    {u"جاز"_s, {3, 2, 1, 2, 3}},           {u"کلاسیک"_s, {3, 1, 0, 1, 3}}, {u"تقویت بیس"_s, {6, 4, 1, 0, 0}},
    {u"صدای انسانی"_s, {-3, 1, 4, 2, -2}}, {u"دیسکو"_s, {5, 2, 0, 2, 5}},
};

const QString EQPreset::customName = u"سفارشی"_s;

size_t qHash(const EQPreset &preset, size_t seed) noexcept
{
    return qHashRange(preset.gains.begin(), preset.gains.end(), qHash(preset.name, seed));
}

} // namespace navorin
