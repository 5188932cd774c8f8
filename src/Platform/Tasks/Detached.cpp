#include "Platform/Tasks/Detached.h"

#include <QDebug>

#include <exception>

namespace navorin {
namespace {

QCoro::Task<void> watch(QCoro::Task<void> task, const char *name)
{
    try {
        co_await task;
    } catch (const std::exception &error) {
        qWarning() << "[Task]" << name << "ended with an unhandled error:" << error.what();
    } catch (...) {
        qWarning() << "[Task]" << name << "ended with an unhandled error of unknown type";
    }
}

} // namespace

void detach(QCoro::Task<void> task, const char *name)
{
    watch(std::move(task), name);
}

} // namespace navorin
