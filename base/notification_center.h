// The in-process notification centre: synchronous publish and subscribe keyed by name, with an untyped
// object. Observers run on the posting thread in the order in which they subscribed. Main thread only.
#pragma once

#include <any>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "base/subscription.h"

namespace pintle {

class NotificationCenter {
  public:
    using Handler = std::function<void(const std::any& object)>;

    /// The handle may outlive the centre. An observer may subscribe or unsubscribe while it is called.
    Subscription observe(std::string name, Handler handler);
    void post(std::string_view name, const std::any& object = {});

  private:
    using Key = std::pair<std::string, std::uint64_t>;
    struct State {
        std::map<Key, std::shared_ptr<Handler>> handlers;
        std::uint64_t next = 0;
    };
    std::shared_ptr<State> state_ = std::make_shared<State>();
};

}  // namespace pintle
