#pragma once

#include "Models/Station.h"
#include "Services/SharedInstance.h"

#include <QCoro/QCoroTask>
#include <QFuture>
#include <QObject>

#include <optional>

namespace navorin {

class APIClient;

/// The catalogue of stations for the screens, in memory only. It fetches the list, keeps the track lists that
/// were fetched before, and filters by category. UI thread only.
class StationStore : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY isLoadingChanged)
    Q_PROPERTY(Category selectedCategory READ selectedCategory WRITE setSelectedCategory NOTIFY
                   selectedCategoryChanged)
public:
    enum class Category { All, Iranian, International, Instrumental };
    Q_ENUM(Category)

    /// The categories in the order of their tabs.
    [[nodiscard]] static QList<Category> categories();
    /// What the tab says.
    [[nodiscard]] static QString label(Category category);
    /// The `Station::category` that the tab selects; absent for All.
    [[nodiscard]] static std::optional<QString> key(Category category);

    static StationStore &shared();

    /// The catalogue in the server's order.
    [[nodiscard]] QList<Station> stations() const { return m_stations; }
    [[nodiscard]] bool isLoading() const { return m_isLoading; }
    /// The text to show for a failed load.
    [[nodiscard]] std::optional<QString> errorMessage() const { return m_errorMessage; }
    [[nodiscard]] Category selectedCategory() const { return m_selectedCategory; }
    void setSelectedCategory(Category category);
    /// The stations of the selected category, computed on every read.
    [[nodiscard]] QList<Station> filteredStations() const;

    /// Fetches the catalogue and publishes it. Dropped while another load runs. `force` only decides whether
    /// a failure is shown while stations are already on the screen.
    QCoro::Task<void> load(bool force);

Q_SIGNALS:
    void stationsChanged();
    void isLoadingChanged();
    void errorMessageChanged();
    void selectedCategoryChanged();

private:
    friend class NavorinRadioApp;
    friend struct TestAccess;

    explicit StationStore(APIClient &client);
    static SharedInstance<StationStore> &instance();

    /// The catalogue of the server with the track lists of `old`; made away from the UI thread.
    [[nodiscard]] QFuture<QList<Station>> refreshed(const QList<Station> &old) const;
    void publish(QList<Station> stations);
    void setLoading(bool loading);
    void setErrorMessage(std::optional<QString> message);

    APIClient &m_client;
    QList<Station> m_stations;
    bool m_isLoading = false;
    std::optional<QString> m_errorMessage;
    Category m_selectedCategory = Category::All;
};

} // namespace navorin
