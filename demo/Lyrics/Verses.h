#pragma once

#include <string_view>
#include <vector>

namespace navorin::demo {

struct VerseLine
{
    std::string_view text;
    std::string_view translation;
};

/// Old verse that belongs to everybody, and a few lines of our own; the translations are ours.
[[nodiscard]] const std::vector<std::vector<VerseLine>> &persianPoems();
[[nodiscard]] const std::vector<std::vector<VerseLine>> &latinPoems();
/// Both scripts in one line, digits and emoji.
[[nodiscard]] const std::vector<VerseLine> &mixedPoem();

} // namespace navorin::demo
