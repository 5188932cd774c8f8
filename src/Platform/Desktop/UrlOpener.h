#pragma once

#include <QUrl>

namespace navorin {

/// Hands an address to whichever program of the desktop is for it. UI thread only.
class UrlOpener
{
public:
    virtual ~UrlOpener() = default;

    /// Some program is registered for the address's scheme. Never for an invalid or relative address.
    [[nodiscard]] virtual bool canOpen(const QUrl &address) const = 0;
    /// False if the desktop refused at once; what the program makes of the address is not known.
    virtual bool open(const QUrl &address) = 0;
};

} // namespace navorin
