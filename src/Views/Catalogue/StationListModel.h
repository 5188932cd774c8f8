#pragma once

#include "Views/Catalogue/StationCard.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace navorin {

/// The cards of the grid. A new catalogue changes it row by row, so that cards that stay the same are not
/// touched. When most of it differs, the rows stay and show other stations: making anew what can be seen
/// would take several frames.
class StationListModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("comes with the home screen")
public:
    enum Role { NameRole = Qt::UserRole, ArtworkRole, TrackLineRole, SelectedRole };

    using QAbstractListModel::QAbstractListModel;

    void setStations(const QList<Station> &stations);
    /// The identity of the current station: every card of it is selected.
    void setSelectedGenre(std::optional<QString> genre);
    [[nodiscard]] QString genreAt(qsizetype row) const { return m_cards.at(row).genre; }

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    void replace(const QList<StationCard> &fresh);
    void insertRows(qsizetype row, qsizetype number, const QList<StationCard> &fresh);
    void removeRows(qsizetype row, qsizetype number);
    void moveRow(qsizetype from, qsizetype to);
    void update(const QList<StationCard> &fresh);
    void tellSelection(const std::optional<QString> &genre);

    QList<StationCard> m_cards;
    std::optional<QString> m_selectedGenre;
};

} // namespace navorin
