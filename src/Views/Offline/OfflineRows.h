#pragma once

#include "Services/Offline/OfflineTrackEntry.h"
#include "Views/Shared/KeyedListModel.h"

#include <QLocale>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace navorin {

/// A kept track as its row shows it.
struct OfflineEntryRow
{
    QString key;
    QString title;
    QString artist;
    QString artworkAddress;
    QString duration; ///< empty if unknown

    bool operator==(const OfflineEntryRow &) const = default;
};

/// A track on its way, as its row shows it.
struct OfflineDownloadRow
{
    QString key;
    QString title;
    double progress = 0; ///< of 1

    bool operator==(const OfflineDownloadRow &) const = default;
};

/// The kept tracks, newest first.
class OfflineEntryModel : public KeyedListModel<OfflineEntryRow>
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("comes with the offline library's screen")
public:
    enum Role { KeyRole = Qt::UserRole, TitleRole, ArtistRole, ArtworkRole, DurationRole };

    using KeyedListModel::KeyedListModel;

    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;
};

/// The running downloads, in the order in which they appeared.
class OfflineDownloadModel : public KeyedListModel<OfflineDownloadRow>
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("comes with the offline library's screen")
public:
    enum Role { KeyRole = Qt::UserRole, TitleRole, ProgressRole };

    using KeyedListModel::KeyedListModel;

    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;
};

/// Minutes and seconds.
[[nodiscard]] QString durationText(std::optional<qint64> seconds);

/// How the desktop counts bytes, by its name in XDG_CURRENT_DESKTOP: KDE's in powers of 1024, the others' in
/// powers of 1000.
[[nodiscard]] QLocale::DataSizeFormats dataSizeFormat(const QString &desktop);

/// How many tracks there are and what they take.
[[nodiscard]] QString librarySummary(qsizetype count, qint64 bytes, QLocale::DataSizeFormats format);

/// `shown` without the downloads that have ended, and with those that are new at its end.
[[nodiscard]] QList<OfflineDownloadRow> downloadRows(const QList<OfflineDownloadRow> &shown,
                                                     const QHash<QString, PlaylistTrack> &running,
                                                     const QHash<QString, double> &progress);

} // namespace navorin
