#include "settings/update_checker.h"

#include <chrono>
#include <cstdlib>
#include <utility>

namespace pintle {
namespace {

using namespace std::chrono_literals;

constexpr auto kTimeout = 15s;
constexpr auto kCheckInterval = 86400s;
constexpr std::uint64_t kBodyLimit = 64U << 10;

UpdateChecker* installed = nullptr;

std::optional<RemoteVersion> documentOf(const Result<HttpResponse>& answer) {
    if (!answer) return std::nullopt;
    const auto& response = answer.value();
    if (response.status && *response.status != 200) return std::nullopt;
    return decodeVersionDocument(response.body);
}

}  // namespace

UpdateEndpoint builtInUpdateEndpoint() {
    const std::string host = PINTLE_UPDATE_HOST;
    return {host + "/version.json", host + "/download.php"};
}

UpdateChecker::UpdateChecker(HttpClient& http, MainQueue& queue, Mediator& mediator, Bundle bundle,
                             UpdateEndpoint endpoint)
    : http_(http),
      queue_(queue),
      mediator_(mediator),
      bundle_(std::move(bundle)),
      endpoint_(std::move(endpoint)) {}

UpdateChecker::~UpdateChecker() {
    if (installed == this) installed = nullptr;
}

UpdateChecker& UpdateChecker::shared() {
    if (!installed) std::abort();
    return *installed;
}
void UpdateChecker::install(UpdateChecker& checker) { installed = &checker; }

void UpdateChecker::start() {
    queue_.post(lifetime_.weakly([this] { check({}); }));
    timer_ = queue_.every(kCheckInterval, lifetime_.weakly([this] { check({}); }));
}

void UpdateChecker::fetch(const std::string& url, FetchDone done) {
    HttpRequest request;
    request.url = url;
    request.headers = {{"User-Agent", "Pintle/" + std::to_string(localBuild())}};
    request.cachePolicy = CachePolicy::reloadIgnoringLocalData;
    request.timeout = kTimeout;
    request.bodyLimit = kBodyLimit;

    const auto id = nextFetch_++;
    auto& fetch = fetches_[id];
    fetch.done = std::move(done);
    // The request's own time-out starts again with every byte that arrives.
    fetch.deadline = queue_.after(kTimeout, lifetime_.weakly([this, id] { finish(id, std::nullopt); }));
    fetch.request =
        http_.start(std::move(request), {},
                    lifetime_.weakly([this, id](const auto& answer) { finish(id, documentOf(answer)); }));
}

void UpdateChecker::finish(std::uint64_t id, std::optional<RemoteVersion> document) {
    auto ended = fetches_.extract(id);
    if (ended) ended.mapped().done(std::move(document));
}

void UpdateChecker::check(std::function<void(bool obtained)> done) {
    fetch(endpoint_.versionURL, [this, done = std::move(done)](std::optional<RemoteVersion> document) {
        const bool obtained = document.has_value();
        if (obtained) {
            if (localBuild() >= document->build) document.reset();
            available_ = std::move(document);
            changed.emit();
        }
        if (done) done(obtained);
    });
}

void UpdateChecker::checkInteractively() {
    check([this](bool obtained) { answerUser(obtained); });
}

void UpdateChecker::answerUser(bool obtained) {
    mediator_.activateIgnoringOtherApps();
    if (available_) {
        const UpdateAlert alert{"Pintle " + available_->version + " is available",
                                "You have version " + bundle_.shortVersion +
                                    ". Download the new version and replace Pintle in Applications.",
                                {"Download", "Later"}};
        mediator_.runAlert(alert, lifetime_.weakly([this](int button) {
            if (button == 0) mediator_.openUrl(endpoint_.downloadURL);
        }));
        return;
    }
    const UpdateAlert alert =
        obtained
            ? UpdateAlert{"Pintle is up to date", "You have the latest version.", {}}
            : UpdateAlert{"Could not check for updates", "Check your internet connection and try again.", {}};
    mediator_.runAlert(alert, [](int) {});
}

}  // namespace pintle
