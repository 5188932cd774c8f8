#pragma once

#include "Views/Catalogue/StationListModel.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace navorin {

class AuthStore;
class RadioPlayer;
class ShazamManager;
class StationStore;

/// The radio tab's state and actions.
class HomeView : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(HomeViewState)
    Q_PROPERTY(QString greeting READ greeting NOTIFY statusChanged)
    Q_PROPERTY(QString statusLabel READ statusLabel NOTIFY statusChanged)
    Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY statusChanged)
    Q_PROPERTY(Content content READ content NOTIFY statusChanged)
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY statusChanged)
    Q_PROPERTY(bool isRefreshing READ isRefreshing NOTIFY statusChanged)
    Q_PROPERTY(bool hasStation READ hasStation NOTIFY hasStationChanged)
    Q_PROPERTY(bool isSignedIn READ isSignedIn NOTIFY isSignedInChanged)
    /// A developer asked for the account sheet at start.
    Q_PROPERTY(bool opensAccountAtStart READ opensAccountAtStart CONSTANT)
    /// A developer asked for this station's screen at start; undefined otherwise.
    Q_PROPERTY(QVariant detailAtStart READ detailAtStart CONSTANT)
    Q_PROPERTY(QStringList categories READ categories CONSTANT)
    Q_PROPERTY(int selectedCategory READ selectedCategory WRITE selectCategory NOTIFY selectedCategoryChanged)
    Q_PROPERTY(navorin::StationListModel *stations READ stations CONSTANT)
public:
    enum Content { Error, Loading, Grid };
    Q_ENUM(Content)

    explicit HomeView(QObject *parent = nullptr);
    HomeView(StationStore &store, RadioPlayer &player, AuthStore &auth, ShazamManager &shazam,
             QObject *parent = nullptr);

    [[nodiscard]] QString greeting() const;
    [[nodiscard]] QString statusLabel() const;
    [[nodiscard]] bool isPlaying() const;
    [[nodiscard]] Content content() const;
    [[nodiscard]] QString errorMessage() const;
    /// A load that the user asked for runs over stations that are shown.
    [[nodiscard]] bool isRefreshing() const;
    [[nodiscard]] bool hasStation() const;
    [[nodiscard]] bool isSignedIn() const;
    [[nodiscard]] bool opensAccountAtStart() const;
    [[nodiscard]] QVariant detailAtStart() const;
    [[nodiscard]] QStringList categories() const;
    /// Index into `categories`.
    [[nodiscard]] int selectedCategory() const;
    void selectCategory(int category);
    [[nodiscard]] StationListModel *stations() { return &m_stations; }

    /// Loads the catalogue; a failure is shown.
    Q_INVOKABLE void refresh();
    /// Plays a live station in the full player; one with tracks asks for its screen.
    Q_INVOKABLE void openCard(int row);

Q_SIGNALS:
    /// `station` is a Station.
    void detailRequested(const QVariant &station);
    /// Somebody outside wants the recognition screen.
    void recognitionRequested();
    void statusChanged();
    void hasStationChanged();
    void isSignedInChanged();
    void selectedCategoryChanged();

private:
    void showStations();
    void showSelection();
    void takeOpenRequest();

    StationStore &m_store;
    RadioPlayer &m_player;
    AuthStore &m_auth;
    ShazamManager &m_shazam;
    StationListModel m_stations;
    bool m_refreshAsked = false;
};

} // namespace navorin
