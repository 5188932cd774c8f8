#pragma once

#include <QString>

namespace navorin {

/// The ad network's root and our name with it, as built in, or as the environment has them. Empty for none.
[[nodiscard]] QString adHost();
[[nodiscard]] QString adSite();

} // namespace navorin
