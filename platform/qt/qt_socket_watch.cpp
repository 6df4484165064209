#include "platform/qt/qt_socket_watch.h"

#include <QObject>
#include <QSocketNotifier>
#include <memory>
#include <utility>

namespace pintle {
namespace {

struct Watch {
    Watch(int fd, std::function<void()> handler)
        : notifier(fd, QSocketNotifier::Read), readable(std::move(handler)) {}
    QSocketNotifier notifier;
    std::function<void()> readable;
    bool wanted = true;
};

}  // namespace

Subscription watchReadable(MainQueue& queue, int fd, std::function<void()> readable) {
    auto watch = std::make_shared<Watch>(fd, std::move(readable));
    QObject::connect(&watch->notifier, &QSocketNotifier::activated, &watch->notifier,
                     [&queue, weak = std::weak_ptr<Watch>(watch)] {
                         const auto alive = weak.lock();
                         if (!alive) return;
                         // Silent until the handler has read, or the loop would spin on what is still unread.
                         alive->notifier.setEnabled(false);
                         queue.post([weak] {
                             const auto called = weak.lock();
                             if (!called || !called->wanted) return;
                             called->readable();
                             if (called->wanted) called->notifier.setEnabled(true);
                         });
                     });
    return Subscription([watch = std::move(watch)]() mutable {
        watch->wanted = false;
        watch->notifier.setEnabled(false);
        watch.reset();
    });
}

}  // namespace pintle
