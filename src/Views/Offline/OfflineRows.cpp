#include "Views/Offline/OfflineRows.h"

#include "Views/Shared/ShownText.h"

#include <algorithm>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

QVariant OfflineEntryModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const auto &row = rows().at(index.row());
    switch (role) {
    case KeyRole:
        return row.key;
    case TitleRole:
    case Qt::DisplayRole:
        return row.title;
    case ArtistRole:
        return row.artist;
    case ArtworkRole:
        return row.artworkAddress;
    case DurationRole:
        return row.duration;
    default:
        return {};
    }
}

QHash<int, QByteArray> OfflineEntryModel::roleNames() const
{
    return {{KeyRole, "key"},
            {TitleRole, "title"},
            {ArtistRole, "artist"},
            {ArtworkRole, "artworkAddress"},
            {DurationRole, "duration"}};
}

QVariant OfflineDownloadModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const auto &row = rows().at(index.row());
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
