#pragma once

#include <memory>
#include <utility>

namespace navorin {

/// The friend of the services: makes them of the parts that a test has, which must outlive them.
struct TestAccess
{
    template <typename T, typename... Parts>
    [[nodiscard]] static std::unique_ptr<T> make(Parts &&...parts)
    {
        return std::unique_ptr<T>(new T(std::forward<Parts>(parts)...));
    }
    /// The same of a service that takes its parts together, as its surroundings.
    template <typename T, typename... Parts>
    [[nodiscard]] static std::unique_ptr<T> makeIn(Parts &&...parts)
    {
        return std::unique_ptr<T>(new T({std::forward<Parts>(parts)...}));
    }

    /// From now on the shared one is made so, on first use.
    template <typename T, typename... Parts>
    static void share(Parts &...parts)
    {
        T::instance().setMaker([&parts...] { return make<T>(parts...); });
    }
    template <typename T, typename... Parts>
    static void shareIn(Parts &...parts)
    {
        T::instance().setMaker([&parts...] { return makeIn<T>(parts...); });
    }
    template <typename... T>
    static void forget()
    {
        (T::instance().reset(), ...);
    }
    template <typename T>
    [[nodiscard]] static bool isMade()
    {
        return T::instance().exists();
    }

    [[nodiscard]] static bool wantsPlayback(const auto &player) { return player.m_wantsPlayback; }
    [[nodiscard]] static bool localTrackOverride(const auto &player) { return player.m_localTrackOverride; }
};

} // namespace navorin
