#pragma once

#include "Views/Shared/ListSteps.h"

#include <QAbstractListModel>

#include <algorithm>

namespace navorin {

/// A list whose rows are told apart by a `QString key`. A new list changes it row by row, so that what stays
/// the same is not touched; when nearly all of it differs, it is replaced as a whole.
template <typename Row>
class KeyedListModel : public QAbstractListModel
{
public:
    using QAbstractListModel::QAbstractListModel;

    void setRows(const QList<Row> &fresh)
    {
        constexpr qsizetype maxSteps = 200;
        const auto steps = listSteps(keysOf(m_rows), keysOf(fresh), maxSteps);
        if (!steps) {
            beginResetModel();
            m_rows = fresh;
            endResetModel();
            return;
        }
        for (const auto &step : *steps)
            carryOut(step, fresh);
        update(fresh);
    }
    [[nodiscard]] const QList<Row> &rows() const { return m_rows; }

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : int(m_rows.size());
    }

private:
    static QList<QString> keysOf(const QList<Row> &rows)
    {
        QList<QString> keys;
        keys.reserve(rows.size());
        for (const auto &row : rows)
            keys.append(row.key);
        return keys;
    }
    void carryOut(const ListStep &step, const QList<Row> &fresh)
    {
        const auto [kind, row, number] = step;
        if (kind == ListStep::Kind::Remove) {
            beginRemoveRows({}, int(row), int(row + number - 1));
            m_rows.remove(row, number);
            endRemoveRows();
        } else if (kind == ListStep::Kind::Move) {
            beginMoveRows({}, int(row), int(row), {}, int(number > row ? number + 1 : number));
            m_rows.move(row, number);
            endMoveRows();
        } else {
            beginInsertRows({}, int(row), int(row + number - 1));
            m_rows.insert(row, number, {});
            std::copy_n(fresh.cbegin() + row, number, m_rows.begin() + row);
            endInsertRows();
        }
    }
    void update(const QList<Row> &fresh)
    {
        for (qsizetype row = 0; row < fresh.size(); ++row) {
            if (m_rows.at(row) == fresh.at(row))
                continue;
            m_rows[row] = fresh.at(row);
            Q_EMIT dataChanged(index(int(row)), index(int(row)));
        }
    }

    QList<Row> m_rows;
};

} // namespace navorin
