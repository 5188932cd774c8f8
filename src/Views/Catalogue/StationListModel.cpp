#include "Views/Catalogue/StationListModel.h"

#include "Views/Shared/ListSteps.h"

#include <algorithm>

namespace navorin {

namespace {

/// A step moves all rows behind it: this many rows moved keep a refresh within a frame.
constexpr qsizetype maxMovedRows = 400'000;
constexpr qsizetype maxSteps = 200;

QList<QString> keysOf(const QList<StationCard> &cards)
{
    QList<QString> keys;
    keys.reserve(cards.size());
    for (const auto &card : cards)
        keys.append(card.genre);
    return keys;
}

} // namespace

void StationListModel::setStations(const QList<Station> &stations)
{
    QList<StationCard> fresh;
    fresh.reserve(stations.size());
    for (const auto &station : stations)
        fresh.append(cardOf(station));
    const auto size = std::max<qsizetype>({m_cards.size(), fresh.size(), 1});
    const auto steps = listSteps(keysOf(m_cards), keysOf(fresh), std::min(maxSteps, maxMovedRows / size));
    if (!steps) {
        replace(fresh);
        return;
    }
    for (const auto &step : *steps) {
        switch (step.kind) {
        case ListStep::Kind::Remove:
            removeRows(step.row, step.number);
            break;
        case ListStep::Kind::Move:
            moveRow(step.row, step.number);
            break;
        case ListStep::Kind::Insert:
            insertRows(step.row, step.number, fresh);
            break;
        }
    }
    update(fresh);
}

void StationListModel::setSelectedGenre(std::optional<QString> genre)
{
    if (genre == m_selectedGenre)
        return;
    const auto old = std::exchange(m_selectedGenre, std::move(genre));
    tellSelection(old);
    tellSelection(m_selectedGenre);
}

int StationListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_cards.size());
}

QVariant StationListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const auto &card = m_cards.at(index.row());
    switch (role) {
    case NameRole:
    case Qt::DisplayRole:
        return card.name;
    case ArtworkRole:
        return card.artworkAddress;
    case TrackLineRole:
        return card.trackLine;
    case SelectedRole:
        return m_selectedGenre == card.genre;
    default:
        return {};
    }
}

QHash<int, QByteArray> StationListModel::roleNames() const
{
    return {{NameRole, "name"},
            {ArtworkRole, "artworkAddress"},
            {TrackLineRole, "trackLine"},
            {SelectedRole, "isSelected"}};
}

void StationListModel::replace(const QList<StationCard> &fresh)
{
    const auto common = std::min(m_cards.size(), fresh.size());
    if (m_cards.size() > common)
        removeRows(common, m_cards.size() - common);
    update(fresh.first(common));
    if (fresh.size() > common)
        insertRows(common, fresh.size() - common, fresh);
}

void StationListModel::insertRows(qsizetype row, qsizetype number, const QList<StationCard> &fresh)
{
    beginInsertRows({}, int(row), int(row + number - 1));
    m_cards.insert(row, number, {});
    std::copy_n(fresh.cbegin() + row, number, m_cards.begin() + row);
    endInsertRows();
}

void StationListModel::removeRows(qsizetype row, qsizetype number)
{
    beginRemoveRows({}, int(row), int(row + number - 1));
    m_cards.remove(row, number);
    endRemoveRows();
}

void StationListModel::moveRow(qsizetype from, qsizetype to)
{
    beginMoveRows({}, int(from), int(from), {}, int(to > from ? to + 1 : to));
    m_cards.move(from, to);
    endMoveRows();
}

void StationListModel::update(const QList<StationCard> &fresh)
{
    for (qsizetype row = 0; row < fresh.size(); ++row) {
        const auto first = row;
        while (row < fresh.size() && m_cards.at(row) != fresh.at(row)) {
            m_cards[row] = fresh.at(row);
            ++row;
        }
        if (row > first)
            Q_EMIT dataChanged(index(int(first)), index(int(row - 1)));
    }
}

void StationListModel::tellSelection(const std::optional<QString> &genre)
{
    if (!genre)
        return;
    for (qsizetype row = 0; row < m_cards.size(); ++row) {
        if (m_cards.at(row).genre == *genre)
            Q_EMIT dataChanged(index(int(row)), index(int(row)), {SelectedRole});
    }
}

} // namespace navorin
