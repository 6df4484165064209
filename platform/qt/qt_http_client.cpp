#include "platform/qt/qt_http_client.h"

#include <fcntl.h>
#include <unistd.h>

#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QObject>
#include <QPointer>
#include <QThread>
#include <QTimer>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <utility>

#include "platform/qt/http_address.h"

namespace pintle {
namespace {

constexpr qint64 kReadBuffer = 1 << 20;

/// What both threads know of one request. The callbacks are touched on the main thread alone.
struct Exchange {
    HttpClient::Progress progress;
    HttpClient::Completion completion;
};

class ProxyChoice : public QNetworkProxyFactory {
  public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& query) override {
        if (isLoopback(query.url())) return {QNetworkProxy(QNetworkProxy::NoProxy)};
        return systemProxyForQuery(query);
    }
};

std::string strerror(int code) { return std::generic_category().message(code); }

/// Receives the body. Lives on the network thread.
class Body {
  public:
    explicit Body(std::optional<std::filesystem::path> file) : file_(std::move(file)) {}
    ~Body() { discard(); }
    /// An empty error text is success.
    std::string open() {
        if (!file_) return {};
        fd_ = ::open(file_->c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0600);
        return fd_ < 0 ? strerror(errno) : std::string();
    }
    std::string write(const QByteArray& bytes) {
        received_ += static_cast<std::uint64_t>(bytes.size());
        if (!file_) {
            memory_.append(bytes.constData(), static_cast<std::size_t>(bytes.size()));
            return {};
        }
        for (qsizetype done = 0; done < bytes.size();) {
            const auto wrote =
                ::write(fd_, bytes.constData() + done, static_cast<std::size_t>(bytes.size() - done));
            if (wrote < 0 && errno == EINTR) continue;
            if (wrote < 0) return strerror(errno);
            done += wrote;
        }
        return {};
    }
    /// The answer with what has come; the file is the receiver's from here on.
    std::string keep(HttpResponse& response) {
        if (fd_ >= 0 && ::close(std::exchange(fd_, -1)) != 0) return strerror(errno);
        kept_ = true;
        response.file = file_;
        response.body = std::move(memory_);
        return {};
    }
    /// What has come goes, unless it was kept.
    void discard() {
        close();
        if (file_ && !std::exchange(kept_, true)) ::unlink(file_->c_str());
    }
    std::uint64_t received() const { return received_; }

  private:
    void close() {
        if (fd_ >= 0) ::close(std::exchange(fd_, -1));
    }
    const std::optional<std::filesystem::path> file_;
    int fd_ = -1;
    bool kept_ = false;
    std::string memory_;
    std::uint64_t received_ = 0;
};

/// One request with its redirects. Lives on the network thread; deletes itself when it has ended.
class Transfer : public QObject {
  public:
    Transfer(QObject* parent, MainQueue& queue, HttpRequest request, std::weak_ptr<Exchange> exchange)
        : QObject(parent),
          queue_(queue),
          request_(std::move(request)),
          exchange_(std::move(exchange)),
          body_(request_.file),
          redirectsLeft_(request_.redirectLimit) {
        manager_.setProxyFactory(new ProxyChoice);
        manager_.setAutoDeleteReplies(false);
        stalled_.setSingleShot(true);
        connect(&stalled_, &QTimer::timeout, this, [this] { breakOff("The request timed out."); });
    }
    ~Transfer() override {
        if (!reply_) return;
        reply_->disconnect();
        reply_->abort();
        delete reply_;
    }

    void begin() {
        const QUrl url(QString::fromStdString(request_.url), QUrl::StrictMode);
        if (!mayFetch(url)) return fail(refusal(url));
        if (const auto error = body_.open(); !error.empty()) return fail(error);
        get(url);
    }

  private:
    static std::string refusal(const QUrl& url) {
        return url.scheme() == QLatin1String("http")
                   ? "Plain http is accepted from this machine only: " + url.toString().toStdString()
                   : "Unsupported address: " + url.toString().toStdString();
    }

    void get(const QUrl& url) {
        QNetworkRequest request(url);
        for (const auto& [name, value] : request_.headers)
            request.setRawHeader(QByteArray::fromStdString(name), QByteArray::fromStdString(value));
        // The bytes as they lie on the server: what is fetched is often a compressed file itself, and only so
        // is its length known.
        request.setRawHeader("Accept-Encoding", "identity");
        if (request_.cachePolicy == CachePolicy::reloadIgnoringLocalData) {
            request.setRawHeader("Cache-Control", "no-cache");
            request.setRawHeader("Pragma", "no-cache");
        }
        request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
        request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
        reply_ = manager_.get(request);
        reply_->setReadBufferSize(kReadBuffer);
        connect(reply_, &QNetworkReply::readyRead, this, [this] { read(); });
        connect(reply_, &QNetworkReply::metaDataChanged, this, [this] { touch(); });
        connect(reply_, &QNetworkReply::finished, this, [this] { finish(); });
        touch();
    }

    void touch() { stalled_.start(request_.timeout); }

    bool isRedirect() const {
        // Without an address the toolkit has the empty one, which would lead back to the same place.
        return request_.redirectLimit > 0 && !reply_->rawHeader("Location").trimmed().isEmpty() &&
               reply_->attribute(QNetworkRequest::RedirectionTargetAttribute).isValid();
    }
    std::optional<std::uint64_t> announced() const {
        if (reply_->hasRawHeader("Transfer-Encoding")) return std::nullopt;
        bool isNumber = false;
        const auto length = reply_->rawHeader("Content-Length").trimmed().toULongLong(&isNumber);
        return isNumber ? std::optional<std::uint64_t>(length) : std::nullopt;
    }

    void read() {
        touch();
        const auto bytes = reply_->readAll();
        if (bytes.isEmpty() || isRedirect()) return;
        if (body_.received() + static_cast<std::uint64_t>(bytes.size()) > request_.bodyLimit)
            return breakOff("The answer is longer than " + std::to_string(request_.bodyLimit) + " bytes.");
        if (const auto error = body_.write(bytes); !error.empty()) return breakOff(error);
        if (const auto total = announced(); total && *total > 0)
            report(std::min(1.0, static_cast<double>(body_.received()) / static_cast<double>(*total)));
    }
    void report(double fraction) {
        queue_.post([weak = exchange_, fraction] {
            if (const auto exchange = weak.lock(); exchange && exchange->progress)
                exchange->progress(fraction);
        });
    }

    void finish() {
        if (isRedirect()) return redirect();
        read();
        if (ended_) return;
        if (lacksNetwork(reply_->error()))
            return end(Error{"network", kNoNetwork, reply_->errorString().toStdString()});
        if (reply_->error() != QNetworkReply::NoError) return breakOff(reply_->errorString().toStdString());
        if (const auto total = announced(); total && body_.received() < *total)
            return breakOff("The connection was closed before the whole answer came.");
        answer();
    }
    /// A name that nobody can look up is what a machine without a network sees first.
    static bool lacksNetwork(QNetworkReply::NetworkError error) {
        return error == QNetworkReply::HostNotFoundError || error == QNetworkReply::UnknownNetworkError ||
               error == QNetworkReply::TemporaryNetworkFailureError ||
               error == QNetworkReply::NetworkSessionFailedError;
    }
    std::optional<int> status() const {
        const auto status = reply_ ? reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute) : QVariant();
        return status.isValid() ? std::optional(status.toInt()) : std::nullopt;
    }
    /// The transfer has ended before its body was whole, or as the toolkit's error. The status of a refusal
    /// is the answer all the same: nobody wants its body, and the toolkit makes errors of many.
    void breakOff(std::string description) {
        constexpr int kAfterSuccess = 300;
        if (const auto code = status(); code && *code >= kAfterSuccess && !isRedirect()) return answer();
        fail(std::move(description));
    }
    void answer() {
        HttpResponse response;
        response.status = status();
        if (const auto failed = body_.keep(response); !failed.empty()) return fail(failed);
        end(std::move(response));
    }
    void redirect() {
        const auto from = reply_->url();
        const auto to = from.resolved(reply_->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl());
        std::exchange(reply_, nullptr)->deleteLater();
        if (redirectsLeft_-- == 0) return fail("Too many redirects.");
        if (!mayRedirect(from, to)) return fail("Refused a redirect to " + to.toString().toStdString());
        get(to);
    }

    void fail(std::string description) { end(Error{"network", -1, std::move(description)}); }
    void end(Result<HttpResponse> result) {
        if (std::exchange(ended_, true)) return;
        stalled_.stop();
        if (reply_) reply_->disconnect(this);
        body_.discard();
        // Nobody there any more to whom the file could belong.
        queue_.post([weak = exchange_, result = std::move(result), file = request_.file] {
            const auto exchange = weak.lock();
            if (exchange && exchange->completion) {
                exchange->progress = nullptr;
                const auto completion = std::exchange(exchange->completion, nullptr);
                completion(result);
            } else if (result && file) {
                ::unlink(file->c_str());
            }
        });
        deleteLater();
    }

    MainQueue& queue_;
    const HttpRequest request_;
    const std::weak_ptr<Exchange> exchange_;
    Body body_;
    int redirectsLeft_;
    QNetworkAccessManager manager_{this};
    QTimer stalled_{this};
    QNetworkReply* reply_ = nullptr;
    bool ended_ = false;
};

class QtHttpClient : public HttpClient {
  public:
    explicit QtHttpClient(MainQueue& queue) : queue_(queue) {
        thread_.setObjectName("network");
        thread_.start();
        transfers_.moveToThread(&thread_);
        // A file that may not grow answers with an error then, instead of a signal that ends the program.
        QMetaObject::invokeMethod(&transfers_, [] {
            sigset_t blocked;
            sigemptyset(&blocked);
            sigaddset(&blocked, SIGXFSZ);
            ::pthread_sigmask(SIG_BLOCK, &blocked, nullptr);
        });
    }
    ~QtHttpClient() override {
        // On their own thread: timers and sockets belong to it.
        QMetaObject::invokeMethod(
            &transfers_, [this] { qDeleteAll(transfers_.children()); }, Qt::BlockingQueuedConnection);
        thread_.quit();
        thread_.wait();
    }

    Subscription start(HttpRequest request, Progress progress, Completion completion) override {
        auto exchange = std::make_shared<Exchange>();
        exchange->progress = std::move(progress);
        exchange->completion = std::move(completion);
        const auto id = std::make_shared<QPointer<Transfer>>();
        QMetaObject::invokeMethod(&transfers_, [this, id, request = std::move(request),
                                                weak = std::weak_ptr<Exchange>(exchange)]() mutable {
            // Given up before it began.
            if (weak.expired()) return;
            auto* transfer = new Transfer(&transfers_, queue_, std::move(request), std::move(weak));
            *id = transfer;
            transfer->begin();
        });
        return Subscription([this, alive = std::weak_ptr<const bool>(alive_), id, exchange]() mutable {
            exchange = nullptr;
            if (alive.expired()) return;
            QMetaObject::invokeMethod(&transfers_, [id] { delete id->data(); });
        });
    }

  private:
    MainQueue& queue_;
    QThread thread_;
    /// Parent of all transfers.
    QObject transfers_;
    std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
};

}  // namespace

std::unique_ptr<HttpClient> makeQtHttpClient(MainQueue& queue) {
    return std::make_unique<QtHttpClient>(queue);
}

}  // namespace pintle
