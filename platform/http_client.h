// Fetching over HTTP: into a file or into memory. Several requests run at once; each ends by itself. Used by
// the theme downloads and the update check, on the main thread.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/result.h"
#include "base/subscription.h"

namespace pintle {

enum class CachePolicy { protocolDefault, reloadIgnoringLocalData };

/// A GET. Addresses are https; plain http goes to this machine (the loopback) only. The server must prove its
/// name by a certificate that this system trusts.
struct HttpRequest {
    std::string url;
    std::vector<std::pair<std::string, std::string>> headers;
    CachePolicy cachePolicy = CachePolicy::protocolDefault;
    /// The request fails when nothing arrives for this long.
    std::chrono::milliseconds timeout{60000};
    /// Redirects are followed under the same rule for addresses, and never from https to http. 0: a redirect
    /// is an answer like any other.
    int redirectLimit = 20;
    /// A longer body is an error, in bytes.
    std::uint64_t bodyLimit = 0;
    /// Where the body is streamed to, replacing what is there; absent: the body is kept in memory.
    std::optional<std::filesystem::path> file;
};

struct HttpResponse {
    /// Absent when what answered did not speak HTTP.
    std::optional<int> status;
    /// The whole body, as the request asked for it: the file, or absent with the bytes in `body`.
    std::optional<std::filesystem::path> file;
    std::string body;
};

/// The code of an Error of a request that failed because there is no network here.
inline constexpr int kNoNetwork = -2;

class HttpClient {
  public:
    /// Between 0 and 1. Comes only where the length of the body is known.
    using Progress = std::function<void(double fraction)>;
    /// Any status is an answer. An error is one of the connection, of the certificate, of a redirect, of the
    /// limits or of writing the file; its description is for people.
    using Completion = std::function<void(Result<HttpResponse>)>;

    virtual ~HttpClient() = default;
    /// Both functions run on the main queue, never inside this call; `completion` runs once, after the last
    /// `progress`. Ending the handle gives the request up: nothing is called any more. Whenever the request
    /// does not end with an answer, its file is removed.
    virtual Subscription start(HttpRequest request, Progress progress, Completion completion) = 0;
};

}  // namespace pintle
