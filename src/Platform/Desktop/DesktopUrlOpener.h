#pragma once

#include "Platform/Desktop/UrlOpener.h"

namespace navorin {

/// The desktop of this session. It is looked at anew each time: a program may be installed meanwhile.
class DesktopUrlOpener final : public UrlOpener
{
public:
    /// Web addresses always count as openable.
    [[nodiscard]] bool canOpen(const QUrl &address) const override;
    bool open(const QUrl &address) override;
};

} // namespace navorin
