#include "apply/null_overlay.h"

namespace pintle {

NullOverlay::NullOverlay(Log& log) {
    log.system(
        "[CursorOverlay] Overlay drawing is not available: where registration is refused the desktop's own "
        "cursor stays");
}

}  // namespace pintle
