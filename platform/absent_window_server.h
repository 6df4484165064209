// The window server of a session in which no pointer can be changed: every function is missing. Main thread
// only.
#pragma once

#include "platform/window_server.h"

namespace pintle {

class AbsentWindowServer : public WindowServer {
  public:
    bool provides(WindowServerFunction) override { return false; }
    ConnectionId mainConnectionID() override { return 0; }
    RegistrationAnswer registerCursorWithImages(ConnectionId, const RegisteredCursor&,
                                                RegistrationPurpose) override {
        return kFailure;
    }
    int coreCursorUnregisterAll(ConnectionId) override { return kFailure; }
    CopiedCursor copyRegisteredCursorImages(ConnectionId, const std::string&) override {
        return {kFailure, {}};
    }
    void flush() override {}

  private:
    static constexpr int kFailure = 1000;
};

}  // namespace pintle
