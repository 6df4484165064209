// The real HTTP client against a server on this machine that behaves as each test wants.
#include "platform/qt/qt_http_client.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>

#include "platform/qt/http_address.h"
#include "tests/contract/queue_worlds.h"
#include "tests/support/loopback_server.h"
#include "tests/support/temporary_folder.h"

namespace pintle {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

/// The names of headers have no case, and Qt 6.8 sends them in lower case.
std::string withLowerCaseName(std::string header) {
    const auto end = std::find(header.begin(), header.end(), ':');
    std::transform(header.begin(), end, header.begin(), [](unsigned char c) { return std::tolower(c); });
    return header;
}

struct HttpClientTest : testing::Test {
    TemporaryFolder folder;
    QtWorld world;
    std::unique_ptr<HttpClient> client = makeQtHttpClient(world.queue());
    std::string content = makeContent(200'000);
    std::optional<LoopbackServer> server;
    std::vector<double> progress;
    std::optional<Result<HttpResponse>> ended;
    Subscription running;

    HttpClientTest() {
        writeFile(folder.path() / "www/file", content);
        server.emplace(folder.path() / "www");
    }
    static std::string makeContent(std::size_t size) {
        std::string text(size, '\0');
        for (std::size_t i = 0; i < size; ++i) text[i] = static_cast<char>(i * 7 + i / 256);
        return text;
    }
    fs::path target() const { return folder.path() / "arrived"; }
    HttpRequest request(const std::string& path = "/a/file") const {
        HttpRequest made;
        made.url = server->address(path);
        made.timeout = 5000ms;
        made.bodyLimit = 1 << 20;
        made.file = target();
        return made;
    }
    void start(HttpRequest made) {
        ended.reset();
        running = client->start(
            std::move(made), [this](double fraction) { progress.push_back(fraction); },
            [this](Result<HttpResponse> result) {
                EXPECT_TRUE(world.queue().isMain());
                ended = std::move(result);
            });
        EXPECT_FALSE(ended);
    }
    /// The error, "" for an answer.
    std::string fetch(HttpRequest made) {
        start(std::move(made));
        EXPECT_TRUE(world.runUntil([&] { return ended.has_value(); }));
        return *ended ? "" : ended->error().description;
    }
    std::string fetchBehaving(const std::string& name) {
        server->behave(name);
        return fetch(request());
    }
    std::string arrived() const {
        std::ifstream file(target(), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void expectNoFile() { EXPECT_FALSE(fs::exists(target())); }
};

TEST_F(HttpClientTest, TheHeadersOfTheRequestReachTheServerOnce) {
    server->behave("headers");
    auto asked = request();
    asked.headers = {{"User-Agent", "Mozilla/5.0"}, {"X-Other", "a value"}};
    ASSERT_EQ(fetch(asked), "");
    std::vector<std::string> headers;
    std::istringstream lines(arrived());
    for (std::string line; std::getline(lines, line);) headers.push_back(withLowerCaseName(line));
    EXPECT_THAT(headers, Contains("user-agent: Mozilla/5.0"));
    EXPECT_THAT(headers, Contains("x-other: a value"));
    EXPECT_THAT(headers, Contains(StartsWith("user-agent:")).Times(1)) << "and not the toolkit's own as well";
}

TEST_F(HttpClientTest, StreamsIntoTheFileAndReportsUpToTheWhole) {
    EXPECT_EQ(fetchBehaving("slow"), "");
    EXPECT_EQ(ended->value().status, 200);
    EXPECT_EQ(ended->value().file, target());
    EXPECT_EQ(arrived(), content);
    EXPECT_GT(progress.size(), 2u);
    EXPECT_TRUE(std::is_sorted(progress.begin(), progress.end()));
    EXPECT_EQ(progress.back(), 1.0);
}

TEST_F(HttpClientTest, KeepsTheBodyInMemoryWhenNoFileIsNamed) {
    auto made = request();
    made.file.reset();
    EXPECT_EQ(fetch(made), "");
    EXPECT_EQ(ended->value().body, content);
    EXPECT_FALSE(ended->value().file);
}

TEST_F(HttpClientTest, AnUnknownLengthIsReportedByNothing) {
    for (const char* name : {"nolength", "chunks"}) {
        EXPECT_EQ(fetchBehaving(name), "") << name;
        EXPECT_EQ(arrived(), content) << name;
        EXPECT_THAT(progress, IsEmpty()) << name;
    }
}

TEST_F(HttpClientTest, EveryStatusIsAnAnswer) {
    for (int status = 200; status < 600; ++status) {
        EXPECT_EQ(fetchBehaving(std::to_string(status)), "") << status;
        EXPECT_EQ(*ended ? ended->value().status : 0, status);
    }
}

TEST_F(HttpClientTest, ARefusalIsAnAnswerAlsoWhenItsBodyIsNotWhole) {
    EXPECT_EQ(fetchBehaving("cut404"), "");
    EXPECT_EQ(ended->value().status, 404);
    server->behave("404");
    auto made = request();
    made.bodyLimit = 2;
    EXPECT_EQ(fetch(made), "");
    EXPECT_EQ(ended->value().status, 404);
}

TEST_F(HttpClientTest, AStatusThatAnnouncesAnotherIsWaitedThrough) {
    EXPECT_EQ(fetchBehaving("early"), "");
    EXPECT_EQ(ended->value().status, 200);
    EXPECT_EQ(arrived(), content);
}

TEST_F(HttpClientTest, RedirectsAreFollowedAndTheirBodiesAreNotKept) {
    EXPECT_EQ(fetchBehaving("redirect"), "");
    EXPECT_EQ(arrived(), content);
}

TEST_F(HttpClientTest, ARedirectLoopEnds) {
    EXPECT_THAT(fetchBehaving("loop"), HasSubstr("Too many redirects"));
    expectNoFile();
}

TEST_F(HttpClientTest, APlainRedirectToAnotherMachineIsRefused) {
    EXPECT_THAT(fetchBehaving("elsewhere"), HasSubstr("Refused a redirect"));
    expectNoFile();
}

TEST_F(HttpClientTest, PlainHttpToAnotherMachineIsRefused) {
    for (const char* address :
         {"http://192.0.2.1/file", "http://example.invalid/", "ftp://127.0.0.1/", "x"}) {
        auto made = request();
        made.url = address;
        EXPECT_NE(fetch(made), "") << address;
        expectNoFile();
    }
}

TEST_F(HttpClientTest, AConnectionThatIsResetInTheMiddleIsAnError) {
    EXPECT_NE(fetchBehaving("reset"), "");
    expectNoFile();
}

TEST_F(HttpClientTest, ABodyShorterThanAnnouncedIsAnError) {
    EXPECT_NE(fetchBehaving("short"), "");
    expectNoFile();
    EXPECT_NE(fetchBehaving("cutchunks"), "");
    expectNoFile();
}

TEST_F(HttpClientTest, AServerThatStallsOrSaysNothingIsATimeout) {
    for (const char* name : {"stall", "silent"}) {
        server->behave(name);
        auto made = request();
        made.timeout = 300ms;
        EXPECT_EQ(fetch(made), "The request timed out.") << name;
        expectNoFile();
    }
}

TEST_F(HttpClientTest, ASlowServerThatGoesOnIsNoTimeout) {
    server->behave("slow");
    auto made = request();
    made.timeout = 500ms;
    EXPECT_EQ(fetch(made), "") << "it takes a second in all";
}

TEST_F(HttpClientTest, WhatIsNoHttpIsAnError) {
    EXPECT_NE(fetchBehaving("nohttp"), "");
    expectNoFile();
}

TEST_F(HttpClientTest, NobodyListeningIsAnError) {
    auto made = request();
    server.reset();
    EXPECT_NE(fetch(made), "");
    expectNoFile();
}

TEST_F(HttpClientTest, AHostThatDoesNotExistIsAnError) {
    auto made = request();
    made.url = "https://host.invalid/file";
    EXPECT_NE(fetch(made), "");
    expectNoFile();
}

TEST_F(HttpClientTest, ACertificateThatDoesNotVerifyIsAnError) {
    const auto key = (folder.path() / "key.pem").string();
    const auto certificate = (folder.path() / "certificate.pem").string();
    const auto command = "openssl req -x509 -newkey rsa:2048 -nodes -days 2 -subj /CN=127.0.0.1 -keyout " +
                         key + " -out " + certificate + " 2>/dev/null";
    ASSERT_EQ(std::system(command.c_str()), 0);
    LoopbackServer secure(folder.path() / "www", certificate, key);
    auto made = request();
    made.url = secure.address("/file", "https");
    EXPECT_THAT(fetch(made), HasSubstr("certificate"));
    expectNoFile();
}

TEST_F(HttpClientTest, ABodyBeyondTheLimitIsAnError) {
    auto made = request();
    made.bodyLimit = 1000;
    EXPECT_THAT(fetch(made), HasSubstr("longer than 1000 bytes"));
    expectNoFile();
}

TEST_F(HttpClientTest, AFileThatMayNotGrowIsAnErrorAndDoesNotEndTheProgram) {
    rlimit before = {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    rlimit small = before;
    small.rlim_cur = 50'000;
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const auto error = fetch(request());
    ::setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(error, "File too large");
    expectNoFile();
}

TEST_F(HttpClientTest, AFileThatCannotBeMadeIsAnError) {
    auto made = request();
    made.file = folder.path() / "not" / "there";
    EXPECT_EQ(fetch(made), "No such file or directory");
}

TEST_F(HttpClientTest, ARequestGivenUpIsNeverAnsweredAndLeavesNoFile) {
    server->behave("slow");
    start(request());
    world.runUntil([&] { return !progress.empty(); });
    running.end();
    const auto reports = progress.size();
    const auto stop = std::chrono::steady_clock::now() + 1500ms;
    world.runUntil([&] { return std::chrono::steady_clock::now() > stop; });
    EXPECT_FALSE(ended);
    EXPECT_EQ(progress.size(), reports);
    expectNoFile();
}

TEST_F(HttpClientTest, ManyRequestsRunAtOnce) {
    server->behave("slow");
    int answered = 0;
    std::vector<Subscription> all;
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < 12; ++i) {
        auto made = request();
        made.file = folder.path() / std::to_string(i);
        all.push_back(client->start(std::move(made), nullptr, [&](const Result<HttpResponse>& result) {
            EXPECT_TRUE(result);
            ++answered;
        }));
    }
    EXPECT_TRUE(world.runUntil([&] { return answered == 12; }));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 10s) << "one after another they take twelve seconds";
}

TEST_F(HttpClientTest, TheClientMayGoWhileRequestsRun) {
    server->behave("stall");
    start(request());
    world.runUntil([&] { return !progress.empty(); });
    client.reset();
    running.end();
    expectNoFile();
    EXPECT_FALSE(ended);
}

TEST(HttpAddress, OnlyHttpsAndThisMachineAreFetched) {
    for (const char* address : {"https://host/", "http://127.0.0.1:80/", "http://127.9.9.9/",
                                "http://localhost/", "http://LOCALHOST/", "http://[::1]:8/"})
        EXPECT_TRUE(mayFetch(QUrl(address))) << address;
    for (const char* address : {"http://host/", "http://127.0.0.1.example/", "http://localhost.example/",
                                "file:///etc/passwd", "ftp://127.0.0.1/", "https:///", "http://128.0.0.1/"})
        EXPECT_FALSE(mayFetch(QUrl(address))) << address;
}

TEST(HttpAddress, RedirectsNeverLeadFromHttpsToHttp) {
    EXPECT_TRUE(mayRedirect(QUrl("https://a/"), QUrl("https://b/")));
    EXPECT_FALSE(mayRedirect(QUrl("https://a/"), QUrl("http://127.0.0.1/")));
    EXPECT_TRUE(mayRedirect(QUrl("http://127.0.0.1/"), QUrl("http://127.0.0.1:8/")));
    EXPECT_TRUE(mayRedirect(QUrl("http://127.0.0.1/"), QUrl("https://host/")));
    EXPECT_FALSE(mayRedirect(QUrl("http://127.0.0.1/"), QUrl("http://host/")));
}

}  // namespace
}  // namespace pintle
