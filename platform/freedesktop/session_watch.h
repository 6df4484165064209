// Observes over D-Bus sleep and wake, this session becoming active, and the lock of the screen. Every service
// may be missing. Main thread.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace pintle {

struct SessionListener {
    std::function<void(bool sleeping)> sleep;
    std::function<void()> sessionActive;
    std::function<void(bool locked)> lock;
};

/// Ends with the handle. Asks its questions without waiting for the answers; the handle must end before the
/// toolkit's application object.
class SessionWatch {
  public:
    /// `patience`: how long a request to lock the session counts while nothing says that it was carried out.
    explicit SessionWatch(SessionListener listener,
                          std::chrono::milliseconds patience = std::chrono::seconds(5));
    ~SessionWatch();

  private:
    class Receiver;
    std::unique_ptr<Receiver> receiver_;
};

}  // namespace pintle
