#pragma once

namespace navorin {

/// Initialises GStreamer, once; a later or simultaneous call waits for the first. A cold plugin registry
/// costs about a second: never on the UI thread.
void initialiseGStreamer();

/// Loads the plugins that a stream or a track will need, so that the first sound does not wait for the disk.
void warmUpGStreamer();

} // namespace navorin
