// Weak handles into callbacks. An object that hands out callbacks holds a Lifetime as its last member and
// wraps each callback with `weakly`: the callback does nothing once the object is gone. The wrapped call and
// the object's end must be on the same thread.
#pragma once

#include <memory>
#include <utility>

namespace pintle {

class Lifetime {
  public:
    Lifetime() = default;
    Lifetime(const Lifetime&) = delete;
    Lifetime& operator=(const Lifetime&) = delete;

    template <typename Work>
    auto weakly(Work work) const {
        return
            [alive = std::weak_ptr<const bool>(token_), work = std::move(work)](auto&&... arguments) mutable {
                if (alive.lock()) work(std::forward<decltype(arguments)>(arguments)...);
            };
    }

  private:
    std::shared_ptr<const bool> token_ = std::make_shared<const bool>(true);
};

}  // namespace pintle
