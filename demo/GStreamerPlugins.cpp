#include "GStreamerPlugins.h"

#include <gst/gst.h>

#include <cstdio>
#include <mutex>
#include <set>
#include <string>

namespace navorin::demo {

namespace {

void load(const std::string &name)
{
    const std::string file = NAVORIN_GSTREAMER_PLUGINS "/libgst" + name + ".so";
    GError *error = nullptr;
    GstPlugin *const plugin = gst_plugin_load_file(file.c_str(), &error);
    if (plugin != nullptr)
        gst_object_unref(plugin);
    else
        std::fprintf(stderr, "cannot load %s: %s\n", file.c_str(), error->message);
    g_clear_error(&error);
}

} // namespace

void loadPlugins(std::initializer_list<const char *> names)
{
    static std::mutex mutex;
    static std::set<std::string> loaded;
    const std::lock_guard lock(mutex);
    if (loaded.empty()) {
        g_setenv("GST_REGISTRY_DISABLE", "yes", TRUE);
        gst_init(nullptr, nullptr);
    }
    for (const char *name : names) {
        if (loaded.insert(name).second)
            load(name);
    }
}

} // namespace navorin::demo
