#include "platform/x11/windows/x11_shell.h"

#include <xcb/xfixes.h>

#include <chrono>
#include <utility>

namespace pintle {
namespace {

using x11::Reply;

constexpr std::uint8_t kEventMask = 0x7f;
/// A panel that takes windows in and also listens on the bus does the two within this time.
constexpr std::chrono::seconds kSettles{1};

}  // namespace

bool displayAnswers(const std::optional<std::string>& display) {
    return x11::XConnection::open(display.value_or("")) != nullptr;
}

X11Shell::X11Shell(X11ShellOptions options)
    : options_(std::move(options)),
      connection_(x11::XConnection::open(options_.display.value_or(""))),
      notifier_([this] {
          settled();
          trays_.emit();
      }) {
    settling_ = options_.queue.after(kSettles, lifetime_.weakly([this] {
        if (std::exchange(settled_, true)) return;
        trays_.emit();
    }));
    settled();
    if (!connection_) return;
    auto* const c = connection_->get();
    presses_.emplace(*connection_, options_.ownWindows, [this] { return options_.queue.now(); });
    const auto* const fixes = xcb_get_extension_data(c, &xcb_xfixes_id);
    traySelection_ = connection_->atom("_NET_SYSTEM_TRAY_S0");
    if (fixes && fixes->present) {
        firstFixesEvent_ = fixes->first_event;
        xcb_discard_reply(c, xcb_xfixes_query_version(c, 4, 0).sequence);
        xcb_xfixes_select_selection_input(c, connection_->root(), traySelection_,
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    }
    askForTray();
    watch_ = options_.watchReadable(connection_->descriptor(), lifetime_.weakly([this] { readable(); }));
    // Reading the answers may have queued events in the library, which the descriptor does not announce.
    options_.queue.post(lifetime_.weakly([this] { readable(); }));
}

X11Shell::~X11Shell() { watch_.end(); }

void X11Shell::settled() {
    const auto state = notifier_.state();
    if (state == NotifierWatch::State::absent || state == NotifierWatch::State::present) settled_ = true;
}

bool X11Shell::hasEmbeddingTray() const { return settled_ && trayOwner_ != 0; }

void X11Shell::askForTray() {
    const Reply<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        connection_->get(), xcb_get_selection_owner(connection_->get(), traySelection_), nullptr));
    trayOwner_ = owner ? owner->owner : 0;
    xcb_flush(connection_->get());
}

void X11Shell::readable() {
    if (!connection_) return;
    // Handlers ask questions, whose answers may bring further events.
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection_->get())}) take(*event);
    if (!connection_->isBroken()) return;
    trayOwner_ = 0;
    // The handle of the watch may be the one that called.
    options_.queue.post([watch = std::make_shared<Subscription>(std::move(watch_))] { watch->end(); });
}

void X11Shell::take(const xcb_generic_event_t& event) {
    presses_->take(event);
    if (firstFixesEvent_ == 0 ||
        (event.response_type & kEventMask) != firstFixesEvent_ + XCB_XFIXES_SELECTION_NOTIFY)
        return;
    const auto& change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
    if (change.selection != traySelection_ || std::exchange(trayOwner_, change.owner) == change.owner) return;
    trays_.emit();
}

std::optional<std::uint64_t> X11Shell::currentPress() {
    if (!presses()) return std::nullopt;
    connection_->synchronize();
    readable();
    return presses_->current();
}

std::optional<panels::Colours> X11Shell::coloursOf(std::uintptr_t icon) {
    if (!connection_) return std::nullopt;
    return panels::coloursOf(*connection_, static_cast<xcb_window_t>(icon), trayOwner_);
}

std::optional<panels::Insets> X11Shell::insetsOf(const std::string& monitor) {
    if (!connection_) return std::nullopt;
    return panels::insetsOf(*connection_, monitor);
}

}  // namespace pintle
