#pragma once

#include <QByteArray>

#include <gst/gst.h>

namespace navorin {

/// Makes where the sound goes; the reference is floating. `description` names a sink as on a gst-launch
/// command line ("fakesink sync=true", or a chain of elements that ends in a sink); none is returned if it
/// names nothing. Empty means the desktop's own output: the sound server, with our name and role, or else the
/// best sink that opens.
///
/// A computer, or a sound server, without any output gets one that plays to nobody in real time, and a line
/// in the log: tracks then still advance and radio still shows its programme, and the next item is heard once
/// an output is there. May take as long as connecting to the sound server takes.
[[nodiscard]] GstElement *makeAudioSink(const QByteArray &description);

} // namespace navorin
