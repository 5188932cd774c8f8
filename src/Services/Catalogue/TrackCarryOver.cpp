#include "Services/Catalogue/TrackCarryOver.h"

#include <QHash>

namespace navorin {

QList<Station> withCarriedTracks(QList<Station> fresh, const QList<Station> &old)
{
    QHash<QString, const QList<PlaylistTrack> *> carried;
    for (const auto &station : old) {
        if (!station.hasTracks())
            continue;
        if (carried.contains(station.genre))
            qFatal("two stations bear the genre \"%s\"", qPrintable(station.genre));
        carried.insert(station.genre, &*station.tracks);
    }
    for (qsizetype i = 0; i < fresh.size(); ++i) {
        const auto &station = fresh.at(i);
        if (!station.tracks || station.hasTracks())
            continue;
        if (const auto *tracks = carried.value(station.genre))
            fresh[i].tracks = *tracks;
    }
    return fresh;
}

} // namespace navorin
