#pragma once

#include <QObject>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace navorin {

/// Where advertisements come from: configuration of the build, which the environment may override.
struct AdNetwork
{
    QUrl host;    ///< the network's root
    QString site; ///< this application's name there
};
/// Absent where no usable host and site are given. `host` may be "backend" for `backendUrl` itself.
[[nodiscard]] std::optional<AdNetwork> adNetwork(const QString &host, const QString &site,
                                                 const QUrl &backendUrl);

/// The page of one advertisement: an empty element, and the network's loader script, which fills it.
[[nodiscard]] QString adPage(const AdNetwork &network);

/// What becomes of an address that the page wants to go to.
enum class AdNavigation { StaysInPage, OpensInBrowser };
[[nodiscard]] AdNavigation adNavigation(const QUrl &address, bool hasTargetFrame);

/// One advertisement in a small web view.
class AdBannerView : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(AdBannerViewState)
    /// There is a network, and a web view can be shown here.
    Q_PROPERTY(bool isConfigured READ isConfigured CONSTANT)
    Q_PROPERTY(QString page READ page CONSTANT)
    Q_PROPERTY(QUrl baseAddress READ baseAddress CONSTANT)
public:
    explicit AdBannerView(QObject *parent = nullptr);

    [[nodiscard]] static bool isConfigured();
    [[nodiscard]] static QString page();
    /// The backend's root, as if the page had come from there.
    [[nodiscard]] static QUrl baseAddress();

    /// For a link that wants a window of its own. False if it is to stay in the page.
    Q_INVOKABLE bool openOutside(const QUrl &address);
};

} // namespace navorin
