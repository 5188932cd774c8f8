#pragma once

#include <QtGlobal>

#include <functional>
#include <memory>
#include <utility>

namespace navorin {

/// Holds the one process-wide instance of a service: made on first use, by the maker that the composition
/// root (or a test) put in. UI thread only.
template <typename T>
class SharedInstance
{
public:
    using Maker = std::function<std::unique_ptr<T>()>;

    void setMaker(Maker maker) { m_maker = std::move(maker); }

    [[nodiscard]] T &get()
    {
        if (!m_instance) {
            if (!m_maker)
                qFatal("a shared service was asked for before the application made its parts");
            m_instance = m_maker();
        }
        return *m_instance;
    }

    [[nodiscard]] bool exists() const { return m_instance != nullptr; }

    void reset()
    {
        m_instance.reset();
        m_maker = nullptr;
    }

private:
    Maker m_maker;
    std::unique_ptr<T> m_instance;
};

} // namespace navorin
