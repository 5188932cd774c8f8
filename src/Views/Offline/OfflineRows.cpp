#include "Views/Offline/OfflineRows.h"

#include "Views/Shared/ShownText.h"

#include <utility>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

void OfflineDownloadModel::setRows(const QList<OfflineDownloadRow> &fresh)
{
    qsizetype row = 0;
    while (row < m_rows.size()) {
        if (row < fresh.size() && m_rows.at(row).key == fresh.at(row).key) {
            if (std::exchange(m_rows[row], fresh.at(row)) != fresh.at(row))
                Q_EMIT dataChanged(index(int(row)), index(int(row)));
            ++row;
            continue;
        }
        beginRemoveRows({}, int(row), int(row));
        m_rows.removeAt(row);
        endRemoveRows();
    }
    if (row == fresh.size())
        return;
    beginInsertRows({}, int(row), int(fresh.size() - 1));
    m_rows.append(fresh.sliced(row));
    endInsertRows();
}

int OfflineDownloadModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

QVariant OfflineDownloadModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const auto &row = m_rows.at(index.row());
    switch (role) {
    case KeyRole:
        return row.key;
    case TitleRole:
    case Qt::DisplayRole:
        return row.title;
    case ProgressRole:
        return row.progress;
    default:
        return {};
    }
}

QHash<int, QByteArray> OfflineDownloadModel::roleNames() const
{
    return {{KeyRole, "key"}, {TitleRole, "title"}, {ProgressRole, "progress"}};
}

QString durationText(std::optional<qint64> seconds)
{
    return seconds ? QString::asprintf("%lld:%02lld", *seconds / 60, *seconds % 60) : QString();
}

QLocale::DataSizeFormats dataSizeFormat(const QString &desktop)
{
    return desktop.split(u':').contains(u"KDE"_s) ? QLocale::DataSizeIecFormat : QLocale::DataSizeSIFormat;
}

QString librarySummary(qsizetype count, qint64 bytes, QLocale::DataSizeFormats format)
{
    const QLocale persian(QLocale::Persian, QLocale::Iran);
    return QString(QString::number(count) + u" آهنگ • "_s + u"مجموع: "_s +
                   persian.formattedDataSize(bytes, 1, format));
}

QList<OfflineDownloadRow> downloadRows(const QList<OfflineDownloadRow> &shown,
                                       const QHash<QString, PlaylistTrack> &running,
                                       const QHash<QString, double> &progress)
{
    QList<OfflineDownloadRow> rows;
    QHash<QString, PlaylistTrack> fresh = running;
    for (const auto &row : shown) {
        if (fresh.remove(row.key))
            rows.append({row.key, row.title, progress.value(row.key)});
    }
    auto keys = fresh.keys();
    keys.sort();
    for (const auto &key : keys)
        rows.append({key, shownText(fresh.value(key).title.value_or(u"بدون عنوان"_s)), progress.value(key)});
    return rows;
}

} // namespace navorin
