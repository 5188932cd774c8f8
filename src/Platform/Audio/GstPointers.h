#pragma once

#include <gst/gst.h>

#include <memory>

namespace navorin {

struct GstUnref
{
    void operator()(gpointer object) const { gst_object_unref(object); }
    void operator()(GstMessage *message) const { gst_message_unref(message); }
    void operator()(GstCaps *caps) const { gst_caps_unref(caps); }
    void operator()(GstQuery *query) const { gst_query_unref(query); }
    void operator()(GError *error) const { g_error_free(error); }
    void operator()(gchar *text) const { g_free(text); }
};

/// Owns one reference of a GStreamer object, or a GLib error or text.
template <typename T>
using GstPtr = std::unique_ptr<T, GstUnref>;

} // namespace navorin
