// Whether a panel listens for tray icons on the session bus. Main thread.
#pragma once

#include <functional>
#include <memory>

namespace pintle {

class NotifierWatch {
  public:
    enum class State {
        /// The bus has not answered yet.
        asking,
        absent,
        /// There is a register of icons, and no panel shows them yet.
        withoutHost,
        present,
    };
    /// `changed` runs at each change of the state, never inside the constructor.
    explicit NotifierWatch(std::function<void()> changed);
    ~NotifierWatch();
    NotifierWatch(const NotifierWatch&) = delete;
    NotifierWatch& operator=(const NotifierWatch&) = delete;

    State state() const;

  private:
    class Receiver;
    std::unique_ptr<Receiver> receiver_;
};

}  // namespace pintle
