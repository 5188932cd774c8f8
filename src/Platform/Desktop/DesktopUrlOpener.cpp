#include "Platform/Desktop/DesktopUrlOpener.h"

#include "Platform/Desktop/SchemeHandlers.h"

#include <QDesktopServices>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

bool DesktopUrlOpener::canOpen(const QUrl &address) const
{
    const auto scheme = address.scheme();
    if (!address.isValid() || scheme.isEmpty())
        return false;
    return scheme == u"http" || scheme == u"https" || hasSchemeHandler(scheme, XdgFolders::current());
}

bool DesktopUrlOpener::open(const QUrl &address)
{
    return QDesktopServices::openUrl(address);
}

} // namespace navorin
