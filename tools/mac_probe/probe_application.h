// The application object that AppKit wants before windows and cursors are touched. Main thread only.
#pragma once

namespace pintle {

/// Makes it, without an icon in the dock.
void startProbeApplication();

}  // namespace pintle
