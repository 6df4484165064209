// Finds out whether a newer build has been published: at the start, once a day, and when the user asks. Used
// by the shell and the popover; downloads nothing. Main thread only.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "base/lifetime.h"
#include "base/signal.h"
#include "platform/bundle.h"
#include "platform/http_client.h"
#include "platform/main_queue.h"
#include "settings/version_document.h"

namespace pintle {

/// The vendor's addresses.
struct UpdateEndpoint {
    std::string versionURL;
    std::string downloadURL;
};

/// Those fixed when the program was built.
UpdateEndpoint builtInUpdateEndpoint();

struct UpdateAlert {
    std::string message;
    std::string informativeText;
    /// From the first, default one; none: the desktop's single default button.
    std::vector<std::string> buttons;
    friend bool operator==(const UpdateAlert&, const UpdateAlert&) = default;
};

class UpdateChecker {
  public:
    /// What the checker needs of the shell to answer the user.
    class Mediator {
      public:
        virtual ~Mediator() = default;
        virtual void activateIgnoringOtherApps() = 0;
        /// Shows a modal alert; `answered` runs once with the number of the button, counted from 0, or not at
        /// all when the program ends before.
        virtual void runAlert(const UpdateAlert& alert, std::function<void(int button)> answered) = 0;
        /// In the default browser.
        virtual void openUrl(const std::string& url) = 0;
    };

    /// Everything passed by reference must outlive the checker.
    UpdateChecker(HttpClient& http, MainQueue& queue, Mediator& mediator, Bundle bundle,
                  UpdateEndpoint endpoint);
    UpdateChecker(const UpdateChecker&) = delete;
    UpdateChecker& operator=(const UpdateChecker&) = delete;
    ~UpdateChecker();

    /// The instance that the root installed. Ends the program when there is none. Not for the core, which
    /// takes the checker by reference.
    static UpdateChecker& shared();
    /// Makes `checker` the answer of shared() until it ends.
    static void install(UpdateChecker& checker);

    /// Checks now and every 24 hours from now on.
    void start();
    /// `done` receives whether a version document was obtained. Several checks may overlap; the one that ends
    /// last decides.
    void check(std::function<void(bool obtained)> done);
    /// Absent for every failure, and for a body that took longer than the time-out or is larger than 64 KiB.
    void fetch(const std::string& url, std::function<void(std::optional<RemoteVersion>)> done);
    /// The menu command: checks and answers with an alert.
    void checkInteractively();

    /// The published version when it is newer than the running one, as the last successful check found it.
    const std::optional<RemoteVersion>& available() const { return available_; }
    /// The vendor's download page.
    const std::string& downloadURL() const { return endpoint_.downloadURL; }
    /// A check has set `available`, perhaps to what it was.
    Signal<> changed;

    /// The number of the running build; 0 when the bundle has no proper one.
    std::int64_t localBuild() const { return parseBuildNumber(bundle_.build); }

  private:
    using FetchDone = std::function<void(std::optional<RemoteVersion>)>;
    struct Fetch {
        Subscription request;
        Timer deadline;
        FetchDone done;
    };

    void finish(std::uint64_t fetch, std::optional<RemoteVersion> document);
    void answerUser(bool obtained);

    HttpClient& http_;
    MainQueue& queue_;
    Mediator& mediator_;
    Bundle bundle_;
    UpdateEndpoint endpoint_;
    std::optional<RemoteVersion> available_;
    std::uint64_t nextFetch_ = 0;
    std::map<std::uint64_t, Fetch> fetches_;
    Timer timer_;
    Lifetime lifetime_;
};

}  // namespace pintle
