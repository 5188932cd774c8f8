#pragma once

namespace navorin {

/// Keeps the computer from suspending by itself for want of input. UI thread only; never waits.
class SuspendInhibitor
{
public:
    virtual ~SuspendInhibitor() = default;

    /// The last word holds, also when the desktop has not answered the one before yet.
    virtual void setInhibited(bool inhibited) = 0;
};

} // namespace navorin
