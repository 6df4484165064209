// Hears over D-Bus of sleep and wake, of this session becoming active, and of the screen being locked. Every
// service may be missing. Main thread.
#pragma once

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
    explicit SessionWatch(SessionListener listener);
    ~SessionWatch();

  private:
    class Receiver;
    std::unique_ptr<Receiver> receiver_;
};

}  // namespace pintle
