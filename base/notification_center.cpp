#include "base/notification_center.h"

#include <vector>

namespace pintle {

Subscription NotificationCenter::observe(std::string name, Handler handler) {
    const Key key{std::move(name), state_->next++};
    state_->handlers.emplace(key, std::make_shared<Handler>(std::move(handler)));
    return Subscription([state = std::weak_ptr<State>(state_), key] {
        if (const auto alive = state.lock()) alive->handlers.erase(key);
    });
}

void NotificationCenter::post(std::string_view name, const std::any& object) {
    std::vector<std::weak_ptr<Handler>> called;
    for (auto it = state_->handlers.lower_bound({std::string(name), 0});
         it != state_->handlers.end() && it->first.first == name; ++it)
        called.push_back(it->second);
    for (const auto& weak : called)
        if (const auto handler = weak.lock()) (*handler)(object);
}

}  // namespace pintle
