#pragma once

#include "Models/Station.h"

#include <QAbstractListModel>
#include <QHash>
#include <QLocale>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace navorin {

/// A track on its way, as its row shows it.
struct OfflineDownloadRow
{
    QString key;
    QString title;
    double progress = 0; ///< of 1

    bool operator==(const OfflineDownloadRow &) const = default;
};

/// The running downloads, in the order in which they appeared.
class OfflineDownloadModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("comes with the offline library's screen")
public:
    enum Role { KeyRole = Qt::UserRole, TitleRole, ProgressRole };

    using QAbstractListModel::QAbstractListModel;

    /// `fresh` has what is left of the rows in their order, and behind them what is new, as downloadRows()
    /// gives it.
    void setRows(const QList<OfflineDownloadRow> &fresh);
    [[nodiscard]] const QList<OfflineDownloadRow> &rows() const { return m_rows; }

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    QList<OfflineDownloadRow> m_rows;
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
