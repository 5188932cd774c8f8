#include "Views/Catalogue/StationCard.h"

#include "Views/Shared/ShownText.h"

namespace navorin {

using namespace Qt::Literals::StringLiterals;

StationCard cardOf(const Station &station)
{
    return {station.genre, shownText(station.displayName()), station.artworkURL.value_or(QString()),
            trackLine(station)};
}

QString trackLine(const Station &station)
{
    if (!station.hasTracks() || station.trackCount.value_or(0) == 0)
        return {};
    return QString::number(station.tracks->size()) + u" آهنگ"_s;
}

} // namespace navorin
