#include "Views/Catalogue/TrackListModel.h"

#include "Views/Shared/ShownText.h"

namespace navorin {

using namespace Qt::Literals::StringLiterals;

QString trackLength(std::optional<qint64> seconds)
{
    if (!seconds || *seconds <= 0)
        return {};
    return QString::asprintf("%lld:%02lld", *seconds / 60, *seconds % 60);
}

void TrackListModel::setTracks(const QList<PlaylistTrack> &tracks)
{
    beginResetModel();
    m_tracks = tracks;
    endResetModel();
}

void TrackListModel::setCurrentRow(std::optional<qsizetype> row)
{
    if (row == m_currentRow)
        return;
    const auto old = std::exchange(m_currentRow, row);
    tell(old);
    tell(m_currentRow);
}

int TrackListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_tracks.size());
}

QVariant TrackListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const auto &track = m_tracks.at(index.row());
    switch (role) {
    case NumberRole:
        return QString::number(index.row() + 1);
    case TitleRole:
    case Qt::DisplayRole:
        return shownText(track.title.value_or(u"—"_s));
    case ArtistRole:
        return shownText(track.artist.value_or(QString()));
    case ArtworkRole:
        return track.artworkURL.value_or(QString());
    case DurationRole:
        return trackLength(track.duration);
    case CurrentRole:
        return m_currentRow == index.row();
    default:
        return {};
    }
}

QHash<int, QByteArray> TrackListModel::roleNames() const
{
    return {{NumberRole, "number"_ba},          {TitleRole, "title"_ba},     {ArtistRole, "artist"_ba},
            {ArtworkRole, "artworkAddress"_ba}, {DurationRole, "length"_ba}, {CurrentRole, "isCurrent"_ba}};
}

void TrackListModel::tell(std::optional<qsizetype> row)
{
    if (!row || *row >= m_tracks.size())
        return;
    const auto changed = index(int(*row));
    Q_EMIT dataChanged(changed, changed, {CurrentRole});
}

} // namespace navorin
