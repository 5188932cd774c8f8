#pragma once

#include <QByteArray>

#include <gst/gst.h>

namespace navorin {

/// Makes where the sound comes from; the reference is floating. `description` names a source as on a
/// gst-launch command line; empty means the desktop's own input: the sound server's default, or else the
/// default of the sound hardware. None is returned where there is none. May take as long as connecting to the
/// sound server takes.
[[nodiscard]] GstElement *makeAudioSource(const QByteArray &description);

} // namespace navorin
