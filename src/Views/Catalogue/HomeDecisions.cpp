#include "Views/Catalogue/HomeDecisions.h"

namespace navorin {

using namespace Qt::Literals::StringLiterals;

QString greeting(int hour)
{
    if (hour >= 5 && hour <= 11)
        return u"صبح بخیر، به رادیو خوش اومدی"_s;
    if (hour == 12 || hour == 13)
        return u"ظهر بخیر، به رادیو خوش اومدی"_s;
    if (hour >= 14 && hour <= 18)
        return u"عصر بخیر، به رادیو خوش اومدی"_s;
    return u"شب بخیر، به رادیو خوش اومدی"_s;
}

QString statusLabel(const HomeStatus &status)
{
    if (status.isBuffering)
        return u"اتصال…"_s;
    if (status.isPlaying)
        return u"در حال پخش"_s;
    if (status.isLoading && status.stationCount == 0)
        return u"بارگذاری"_s;
    return QString::number(status.stationCount) + u" ایستگاه"_s;
}

HomeContent homeContent(bool hasError, bool isLoading, bool hasStations)
{
    if (hasStations)
        return HomeContent::Grid;
    if (hasError)
        return HomeContent::Error;
    return isLoading ? HomeContent::Loading : HomeContent::Grid;
}

bool opensDetail(const Station &station)
{
    return station.hasTracks() || station.needsHydration();
}

} // namespace navorin
