#pragma once

#include "Platform/Tasks/MainQueue.h"

#include <QObject>

#include <memory>

namespace navorin {

/// The real queue, over the event loop of the thread that makes it. Work that is still queued when the queue
/// is destroyed is dropped.
class QtMainQueue final : public MainQueue
{
public:
    QtMainQueue();

    void post(Work work) override;
    [[nodiscard]] std::unique_ptr<Timer> after(std::chrono::milliseconds delay, Work work) override;
    [[nodiscard]] std::unique_ptr<Timer> every(std::chrono::milliseconds interval, Work work) override;
    [[nodiscard]] QFuture<void> sleep(std::chrono::milliseconds delay) override;

private:
    std::unique_ptr<QObject> m_mailbox;
};

} // namespace navorin
