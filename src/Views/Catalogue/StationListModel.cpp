#include "Views/Catalogue/StationListModel.h"

#include "Views/Catalogue/StationCard.h"

namespace navorin {

void StationListModel::setStations(const QList<Station> &stations)
{
    QList<ListRow> fresh;
    fresh.reserve(stations.size());
    for (const auto &station : stations) {
        auto card = cardOf(station);
        fresh.append({std::move(card.genre),
                      std::move(card.name),
                      std::move(card.trackLine),
                      std::move(card.artworkAddress),
                      {}});
    }
    setRows(fresh);
}

QHash<int, QByteArray> StationListModel::roleNames() const
{
    return {{TitleRole, "name"},
            {LineRole, "trackLine"},
            {ArtworkRole, "artworkAddress"},
            {SelectedRole, "isSelected"}};
}

} // namespace navorin
