// The process as the desktop sees it. Main thread only.
#pragma once

#include <functional>
#include <string>

namespace pintle {

enum class ActivationPolicy { regular, accessory, prohibited };

class Application {
  public:
    virtual ~Application() = default;
    virtual void setActivationPolicy(ActivationPolicy policy) = 0;
    virtual void activateIgnoringOtherApps() = 0;
    /// In the program that the user has chosen for such addresses: browser or mail.
    virtual void openUrl(const std::string& url) = 0;
    /// A passing message of the desktop; lost where the desktop has none.
    virtual void notify(const std::string& title, const std::string& text) = 0;
    /// Ends the program soon, through `willTerminate`. Returns.
    virtual void terminate() = 0;
    /// `handler` runs once, however the program comes to its orderly end: by terminate(), by the end of the
    /// desktop session. Not for a signal.
    virtual void setWillTerminate(std::function<void()> handler) = 0;
};

}  // namespace pintle
