#pragma once

#include "Models/Station.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace navorin {

/// The rows of a station's track list.
class TrackListModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("comes with the station's screen")
public:
    enum Role { NumberRole = Qt::UserRole, TitleRole, ArtistRole, ArtworkRole, DurationRole, CurrentRole };

    using QAbstractListModel::QAbstractListModel;

    void setTracks(const QList<PlaylistTrack> &tracks);
    /// The row that plays.
    void setCurrentRow(std::optional<qsizetype> row);
    [[nodiscard]] const QList<PlaylistTrack> &tracks() const { return m_tracks; }

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    void tell(std::optional<qsizetype> row);

    QList<PlaylistTrack> m_tracks;
    std::optional<qsizetype> m_currentRow;
};

/// The length of a track at the end of its row; empty where none is known.
[[nodiscard]] QString trackLength(std::optional<qint64> seconds);

} // namespace navorin
