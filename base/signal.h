// An event with typed arguments. Its observers are called in the order in which they subscribed.
// Main thread only. The handle may outlive the signal.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "base/subscription.h"

namespace pintle {

template <typename... Arguments>
class Signal {
  public:
    using Handler = std::function<void(Arguments...)>;

    Subscription observe(Handler handler) {
        const auto id = state_->next++;
        state_->handlers.emplace(id, std::make_shared<Handler>(std::move(handler)));
        return Subscription([state = std::weak_ptr<State>(state_), id] {
            if (const auto alive = state.lock()) alive->handlers.erase(id);
        });
    }

    void emit(Arguments... arguments) const {
        std::vector<std::weak_ptr<Handler>> called;
        for (const auto& [id, handler] : state_->handlers) called.push_back(handler);
        for (const auto& weak : called)
            if (const auto handler = weak.lock()) (*handler)(arguments...);
    }

  private:
    struct State {
        std::map<std::uint64_t, std::shared_ptr<Handler>> handlers;
        std::uint64_t next = 0;
    };
    std::shared_ptr<State> state_ = std::make_shared<State>();
};

}  // namespace pintle
