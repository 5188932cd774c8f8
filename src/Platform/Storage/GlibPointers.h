#pragma once

#include <gio/gio.h>
#include <memory>

namespace navorin {

struct GlibDeleter
{
    void operator()(GVariant *variant) const { g_variant_unref(variant); }
    void operator()(GError *error) const { g_error_free(error); }
    void operator()(GMainContext *context) const { g_main_context_unref(context); }
    void operator()(gpointer object) const { g_object_unref(object); }
};

/// Owns one reference.
template <typename T>
using GlibPointer = std::unique_ptr<T, GlibDeleter>;

} // namespace navorin
