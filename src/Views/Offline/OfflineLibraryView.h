#pragma once

#include "Views/Offline/OfflineRows.h"
#include "Views/Shared/RowListModel.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace navorin {

class OfflineStore;
class RadioPlayer;

/// What the screen of the offline library shows and does.
class OfflineLibraryView : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(OfflineLibraryViewState)
    /// Nothing is kept and nothing is on its way.
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY libraryChanged)
    Q_PROPERTY(bool hasEntries READ hasEntries NOTIFY libraryChanged)
    Q_PROPERTY(QString summary READ summary NOTIFY libraryChanged)
    /// The mini player lies over the end of the list.
    Q_PROPERTY(bool hasStation READ hasStation NOTIFY hasStationChanged)
    /// The kept tracks, newest first: title, artist and duration.
    Q_PROPERTY(navorin::RowListModel *entries READ entries CONSTANT)
    Q_PROPERTY(navorin::OfflineDownloadModel *downloads READ downloads CONSTANT)
public:
    explicit OfflineLibraryView(QObject *parent = nullptr);
    OfflineLibraryView(OfflineStore &store, RadioPlayer &player, QObject *parent = nullptr);

    [[nodiscard]] bool isEmpty() const;
    [[nodiscard]] bool hasEntries() const;
    [[nodiscard]] QString summary() const;
    [[nodiscard]] bool hasStation() const;
    [[nodiscard]] RowListModel *entries() { return &m_entries; }
    [[nodiscard]] OfflineDownloadModel *downloads() { return &m_downloads; }

    /// Plays the whole library from the place `row`. The library plays oldest first while the rows are newest
    /// first: with several tracks it is another one that begins, but for the row in the middle.
    Q_INVOKABLE void play(int row);
    /// What `remove` needs to know of a row, which may move meanwhile.
    Q_INVOKABLE QString keyAt(int row) const;
    Q_INVOKABLE void remove(const QString &key);
    Q_INVOKABLE void removeAll();
    Q_INVOKABLE void cancel(const QString &key);

Q_SIGNALS:
    void libraryChanged();
    void hasStationChanged();

private:
    void showEntries();
    void showDownloads();

    OfflineStore &m_store;
    RadioPlayer &m_player;
    RowListModel m_entries;
    OfflineDownloadModel m_downloads;
};

} // namespace navorin
