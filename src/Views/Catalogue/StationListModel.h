#pragma once

#include "Models/Station.h"
#include "Views/Shared/RowListModel.h"

namespace navorin {

/// The cards of the grid, told apart by genre.
class StationListModel : public RowListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("comes with the home screen")
public:
    using RowListModel::RowListModel;

    void setStations(const QList<Station> &stations);
    /// The identity of the current station: every card of it is selected.
    void setSelectedGenre(std::optional<QString> genre) { setSelectedKey(std::move(genre)); }
    [[nodiscard]] QString genreAt(qsizetype row) const { return rows().at(row).key; }

    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;
};

} // namespace navorin
