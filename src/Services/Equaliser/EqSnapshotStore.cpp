#include "Services/Equaliser/EqSnapshotStore.h"

#include <utility>

namespace navorin {

SnapshotBox EqSnapshotStore::read() const
{
    const std::scoped_lock lock(m_lock);
    return m_value;
}

void EqSnapshotStore::write(bool enabled, const EqGains &gains)
{
    SnapshotBox box{enabled, std::make_shared<const EqGains>(gains)};
    {
        const std::scoped_lock lock(m_lock);
        std::swap(m_value, box);
    }
}

EqSnapshotStore &eqSnapshotStore()
{
    // never destroyed: the audio thread may outlive the end of main
    static auto &store = *new EqSnapshotStore;
    return store;
}

} // namespace navorin
