#include "tools/mac_probe/probe_application.h"

#import <AppKit/AppKit.h>

namespace pintle {

void startProbeApplication() {
    [NSApplication.sharedApplication setActivationPolicy:NSApplicationActivationPolicyAccessory];
}

}  // namespace pintle
