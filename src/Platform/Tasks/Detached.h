#pragma once

#include <QCoro/QCoroTask>

namespace navorin {

/// Starts `task` on the UI thread without waiting for it. It runs at once up to its first suspension. An
/// exception that escapes it is a fault of ours: it is printed with `name` and goes no further.
void detach(QCoro::Task<void> task, const char *name);

} // namespace navorin
