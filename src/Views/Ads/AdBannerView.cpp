#include "Views/Ads/AdBannerView.h"

#include "Platform/Desktop/UrlOpener.h"
#include "Services/Backend/APIClient.h"
#include "Views/ViewSetup.h"

#include <unistd.h>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

/// A web view that may not shut itself off from the machine ends the whole program; the superuser's may not.
bool canShowWebView()
{
    return geteuid() != 0 || qEnvironmentVariableIsSet("QTWEBENGINE_DISABLE_SANDBOX");
}

} // namespace

std::optional<AdNetwork> adNetwork(const QString &host, const QString &site, const QUrl &backendUrl)
{
    const auto root = host == u"backend"_s ? backendUrl : QUrl(host, QUrl::StrictMode);
    const bool isWeb = root.scheme() == u"https"_s || root.scheme() == u"http"_s;
    if (!isWeb || root.host().isEmpty() || site.isEmpty())
        return std::nullopt;
    return AdNetwork{root, site};
}

QString adPage(const AdNetwork &network)
{
    auto loader = network.host;
    loader.setPath(u"/serve/"_s + network.site + u"/loader.js"_s);
    // Quotes are percent-encoded in a full encoding, so the address cannot end its string.
    const auto source = QString::fromLatin1(loader.toEncoded()).replace(QChar(u'\''), u"%27"_s);
    return uR"(<!DOCTYPE html>
<html>
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1.0, maximum-scale=1.0, user-scalable=no">
<style>
html, body { margin: 0; padding: 0; background: transparent; overflow: hidden; width: 100%; height: 100%; }
#mediaad-DABn6 { width: 100%; }
</style>
<script>
(function () {
  var loader = document.createElement('script');
  loader.type = 'text/javascript';
  loader.async = true;
  loader.src = '%1';
  document.head.appendChild(loader);
})();
</script>
</head>
<body><div id="mediaad-DABn6"></div></body>
</html>
)"_s.arg(source);
}

AdNavigation adNavigation(const QUrl &address, bool hasTargetFrame)
{
    const bool isWeb = address.scheme() == u"https"_s || address.scheme() == u"http"_s;
    return !hasTargetFrame && isWeb ? AdNavigation::OpensInBrowser : AdNavigation::StaysInPage;
}

AdBannerView::AdBannerView(QObject *parent)
    : QObject(parent)
{
}

bool AdBannerView::isConfigured()
{
    return viewSurroundings().adNetwork && canShowWebView();
}

QString AdBannerView::page()
{
    const auto &network = viewSurroundings().adNetwork;
    return network ? adPage(*network) : QString();
}

QUrl AdBannerView::baseAddress()
{
    return APIClient::shared().baseUrl();
}

bool AdBannerView::openOutside(const QUrl &address)
{
    if (adNavigation(address, false) != AdNavigation::OpensInBrowser)
        return false;
    viewSurroundings().urlOpener.open(address);
    return true;
}

} // namespace navorin
