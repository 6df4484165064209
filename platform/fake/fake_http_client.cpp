#include "platform/fake/fake_http_client.h"

#include <fstream>

namespace pintle {

Subscription FakeHttpClient::start(HttpRequest request, Progress progress, Completion completion) {
    auto exchange = std::make_shared<Exchange>();
    exchange->progress = std::move(progress);
    exchange->completion = std::move(completion);
    exchanges_.push_back(exchange);
    requests.push_back(request);
    return Subscription([exchange, file = request.file] {
        if (exchange->running && file) {
            std::error_code ignored;
            std::filesystem::remove(*file, ignored);
        }
        exchange->running = false;
        exchange->wanted = false;
    });
}

void FakeHttpClient::progress(std::size_t which, double fraction) {
    queue_.post([exchange = exchanges_[which], fraction] {
        if (exchange->wanted && exchange->progress) exchange->progress(fraction);
    });
}

void FakeHttpClient::answer(std::size_t which, int status, std::string_view body) {
    HttpResponse response{status, requests[which].file, {}};
    if (!exchanges_[which]->running) return;
    if (response.file)
        std::ofstream(*response.file, std::ios::binary) << body;
    else
        response.body = body;
    finish(which, std::move(response));
}

void FakeHttpClient::answer(std::size_t which, HttpResponse response) { finish(which, std::move(response)); }

void FakeHttpClient::fail(std::size_t which, std::string description, int code) {
    if (exchanges_[which]->running && requests[which].file) {
        std::error_code ignored;
        std::filesystem::remove(*requests[which].file, ignored);
    }
    finish(which, Error{"network", code, std::move(description)});
}

void FakeHttpClient::finish(std::size_t which, Result<HttpResponse> result) {
    const auto& exchange = exchanges_[which];
    if (!exchange->running) return;
    exchange->running = false;
    queue_.post([exchange, result = std::move(result)] {
        if (exchange->wanted) exchange->completion(result);
    });
}

}  // namespace pintle
