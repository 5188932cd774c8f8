#pragma once

#include <vector>

namespace navorin::demo {

/// Adds the sound of a room to both channels in place. `amount` from 0 to 1.
void addHall(std::vector<float> &left, std::vector<float> &right, float amount);

} // namespace navorin::demo
