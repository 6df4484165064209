// An HTTP client whose answers a test gives by hand. Callbacks go through the main queue, as the real ones
// do.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/http_client.h"
#include "platform/main_queue.h"

namespace pintle {

class FakeHttpClient : public HttpClient {
  public:
    explicit FakeHttpClient(MainQueue& queue) : queue_(queue) {}

    Subscription start(HttpRequest request, Progress progress, Completion completion) override;

    /// By the order of their start, counted from 0.
    void progress(std::size_t which, double fraction);
    /// Writes `body` to the file of the request, if it names one, and answers.
    void answer(std::size_t which, int status, std::string_view body);
    /// Answers as given, writing nothing.
    void answer(std::size_t which, HttpResponse response);
    void fail(std::size_t which, std::string description, int code = -1);

    /// Whether the request has neither ended nor been given up.
    bool running(std::size_t which) const { return exchanges_[which]->running; }
    /// Every request, in the order of their start.
    std::vector<HttpRequest> requests;

  private:
    struct Exchange {
        Progress progress;
        Completion completion;
        bool running = true;
        bool wanted = true;
    };
    void finish(std::size_t which, Result<HttpResponse> result);

    MainQueue& queue_;
    std::vector<std::shared_ptr<Exchange>> exchanges_;
};

}  // namespace pintle
