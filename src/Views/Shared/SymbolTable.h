#pragma once

#include <QString>

namespace navorin {

/// The drawing that stands for a system symbol name such as "play.fill", as a resource path; empty for a name
/// that is not in use. The one place where names meet files.
[[nodiscard]] QString symbolFile(const QString &name);

} // namespace navorin
