#pragma once

#include "Models/Station.h"
#include "Views/Shared/RowListModel.h"

#include <QCoro/QCoroTask>
#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

namespace navorin {

class APIClient;
class RadioPlayer;

/// A search of SoundCloud: what is typed, what was found, and how it goes. The last search asked for is the
/// one whose answer shows.
class SoundCloudSearchView : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(SoundCloudSearchViewState)
    Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY queryChanged)
    Q_PROPERTY(navorin::RowListModel *results READ results CONSTANT)
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY changed)
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY changed)
    /// Something was searched for.
    Q_PROPERTY(bool searched READ searched NOTIFY changed)
    /// The search came to its end and there is nothing.
    Q_PROPERTY(bool foundNothing READ foundNothing NOTIFY changed)
    /// The same of the text as it is typed now.
    Q_PROPERTY(bool foundNothingForQuery READ foundNothingForQuery NOTIFY changed)
    Q_PROPERTY(bool hasStation READ hasStation NOTIFY stationChanged)
    Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY isPlayingChanged)
public:
    /// What becomes of a search asked for while another runs.
    enum class WhileLoading { Refused, Supersedes };

    explicit SoundCloudSearchView(QObject *parent = nullptr);
    SoundCloudSearchView(APIClient &client, RadioPlayer &player, WhileLoading whileLoading,
                         QObject *parent = nullptr);

    [[nodiscard]] QString query() const { return m_query; }
    void setQuery(const QString &query);
    [[nodiscard]] RowListModel *results() { return &m_results; }
    [[nodiscard]] bool isLoading() const { return m_isLoading; }
    [[nodiscard]] QString errorMessage() const { return m_errorMessage; }
    [[nodiscard]] bool searched() const { return m_searched; }
    [[nodiscard]] bool foundNothing() const;
    [[nodiscard]] bool foundNothingForQuery() const;
    [[nodiscard]] bool hasStation() const;
    [[nodiscard]] bool isPlaying() const;

    /// Nothing for a query of blanks.
    Q_INVOKABLE void search();
    Q_INVOKABLE void play(int row);

Q_SIGNALS:
    void queryChanged();
    void changed();
    void stationChanged();
    void isPlayingChanged();

private:
    static QCoro::Task<void> carryOut(QPointer<SoundCloudSearchView> view, QString query, quint64 number);
    void finish(quint64 number, const QList<Station> &stations, const QString &failure);
    void showSelection();

    APIClient &m_client;
    RadioPlayer &m_player;
    const WhileLoading m_whileLoading;
    QString m_query;
    QString m_lastQuery;
    QList<Station> m_stations;
    RowListModel m_results;
    bool m_isLoading = false;
    QString m_errorMessage;
    bool m_searched = false;
    quint64 m_number = 0; ///< of the last search
};

} // namespace navorin
