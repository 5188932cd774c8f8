#pragma once

#include <initializer_list>

namespace navorin::demo {

/// Starts GStreamer with only the plugins of these names, and adds those of later calls: a scan of all
/// plugins into a fresh registry takes a second, which the first listener would hear as silence. Any thread.
void loadPlugins(std::initializer_list<const char *> names);

} // namespace navorin::demo
