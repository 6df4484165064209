// What the window server shows under some identifiers, to be put back after a check has withdrawn all of it:
// the theme of a program that runs. Main thread only.
#pragma once

#include <string>
#include <vector>

#include "platform/window_server.h"

namespace pintle {

class KeptRegistrations {
  public:
    /// Copies what is shown now; nothing where the server cannot copy. `server` must outlive this object.
    KeptRegistrations(WindowServer& server, const std::vector<std::string>& identifiers);
    /// Registers again what is shown differently now. How many identifiers.
    int restore();

  private:
    WindowServer& server_;
    std::vector<RegisteredCursor> kept_;
};

}  // namespace pintle
