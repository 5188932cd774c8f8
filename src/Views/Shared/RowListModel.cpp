#include "Views/Shared/RowListModel.h"

#include "Views/Shared/ListSteps.h"

#include <algorithm>

namespace navorin {

namespace {

/// A step moves all rows behind it: this many rows moved keep a refresh within a frame.
constexpr qsizetype maxMovedRows = 400'000;
constexpr qsizetype maxSteps = 200;

QList<QString> keysOf(const QList<ListRow> &rows)
{
    QList<QString> keys;
    keys.reserve(rows.size());
    for (const auto &row : rows)
        keys.append(row.key);
    return keys;
}

} // namespace

void RowListModel::setRows(const QList<ListRow> &fresh)
{
    const auto before = m_rows.size();
    carryOut(fresh);
    if (m_rows.size() != before)
        Q_EMIT countChanged();
}

void RowListModel::carryOut(const QList<ListRow> &fresh)
{
    const auto size = std::max<qsizetype>({m_rows.size(), fresh.size(), 1});
    const auto steps = listSteps(keysOf(m_rows), keysOf(fresh), std::min(maxSteps, maxMovedRows / size));
    if (!steps) {
        replace(fresh);
        return;
    }
    for (const auto &step : *steps) {
        switch (step.kind) {
        case ListStep::Kind::Remove:
            removeSome(step.row, step.number);
            break;
        case ListStep::Kind::Move:
            moveOne(step.row, step.number);
            break;
        case ListStep::Kind::Insert:
            insertSome(step.row, step.number, fresh);
            break;
        }
    }
    update(fresh);
}

void RowListModel::setSelectedKey(std::optional<QString> key)
{
    if (key == m_selectedKey)
        return;
    const auto old = std::exchange(m_selectedKey, std::move(key));
    tellSelection(old);
    tellSelection(m_selectedKey);
}

qsizetype RowListModel::rowOf(const QString &key) const
{
    const auto found =
        std::find_if(m_rows.cbegin(), m_rows.cend(), [&](const ListRow &row) { return row.key == key; });
    return found == m_rows.cend() ? -1 : found - m_rows.cbegin();
}

int RowListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant RowListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const auto &row = m_rows.at(index.row());
    switch (role) {
    case TitleRole:
    case Qt::DisplayRole:
        return row.title;
    case LineRole:
        return row.line;
    case ArtworkRole:
        return row.artworkAddress;
    case NoteRole:
        return row.note;
    case SelectedRole:
        return m_selectedKey == row.key;
    default:
        return {};
    }
}

QHash<int, QByteArray> RowListModel::roleNames() const
{
    return {{TitleRole, "title"},
            {LineRole, "line"},
            {ArtworkRole, "artworkAddress"},
            {NoteRole, "note"},
            {SelectedRole, "isSelected"}};
}

void RowListModel::replace(const QList<ListRow> &fresh)
{
    const auto common = std::min(m_rows.size(), fresh.size());
    if (m_rows.size() > common)
        removeSome(common, m_rows.size() - common);
    update(fresh.first(common));
    if (fresh.size() > common)
        insertSome(common, fresh.size() - common, fresh);
}

void RowListModel::insertSome(qsizetype row, qsizetype number, const QList<ListRow> &fresh)
{
    beginInsertRows({}, int(row), int(row + number - 1));
    m_rows.insert(row, number, {});
    std::copy_n(fresh.cbegin() + row, number, m_rows.begin() + row);
    endInsertRows();
}

void RowListModel::removeSome(qsizetype row, qsizetype number)
{
    beginRemoveRows({}, int(row), int(row + number - 1));
    m_rows.remove(row, number);
    endRemoveRows();
}

void RowListModel::moveOne(qsizetype from, qsizetype to)
{
    beginMoveRows({}, int(from), int(from), {}, int(to > from ? to + 1 : to));
    m_rows.move(from, to);
    endMoveRows();
}

void RowListModel::update(const QList<ListRow> &fresh)
{
    for (qsizetype row = 0; row < fresh.size(); ++row) {
        const auto first = row;
        while (row < fresh.size() && m_rows.at(row) != fresh.at(row)) {
            m_rows[row] = fresh.at(row);
            ++row;
        }
        if (row > first)
            Q_EMIT dataChanged(index(int(first)), index(int(row - 1)));
    }
}

void RowListModel::tellSelection(const std::optional<QString> &key)
{
    if (!key)
        return;
    for (qsizetype row = 0; row < m_rows.size(); ++row) {
        if (m_rows.at(row).key == *key)
            Q_EMIT dataChanged(index(int(row)), index(int(row)), {SelectedRole});
    }
}

} // namespace navorin
