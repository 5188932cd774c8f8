#pragma once

#include "Services/Equaliser/EqBands.h"

#include <memory>
#include <mutex>

namespace navorin {

/// What the audio thread needs to know of the user's settings.
struct SnapshotBox
{
    bool enabled = false;
    std::shared_ptr<const EqGains> gains; ///< never null, never changed once it is shared
};

/// The only thing that the UI thread and the audio thread share. A reader gets one whole box and holds the
/// lock for no longer than it takes to copy a bool and a reference.
class EqSnapshotStore
{
public:
    /// Any thread.
    [[nodiscard]] SnapshotBox read() const;
    /// Any thread.
    void write(bool enabled, const EqGains &gains);

private:
    mutable std::mutex m_lock;
    SnapshotBox m_value{false, std::make_shared<const EqGains>()};
};

/// The one of the process; off and flat until the model is made.
[[nodiscard]] EqSnapshotStore &eqSnapshotStore();

} // namespace navorin
