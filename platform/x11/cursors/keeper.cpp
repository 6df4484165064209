#include "platform/x11/cursors/keeper.h"

#include <algorithm>

namespace pintle::x11 {
namespace {

// Time for programs to show what was replaced by name.
constexpr std::chrono::milliseconds kSettleTime{40};
// A held button means a grab, whose cursor is not that of the window under the pointer.
constexpr std::chrono::milliseconds kButtonTime{250};
constexpr int kRoundsByName = 2;
constexpr std::size_t kMostSettled = 4096;
constexpr std::size_t kMostTouched = 1024;

}  // namespace

void Keeper::applied(const std::vector<WantedCursors::Change>& changes) {
    const bool wasOn = on_;
    on_ = parts_.wanted.hasTheme();
    waiting_ = false;
    timer_.end();
    subject_ = {};
    settled_.clear();
    limit_.reset();
    if (on_ != wasOn) parts_.watcher->listenToCursors(on_);
    giveBackTouched(changes);
    if (on_)
        examine();
    else
        lastKnown_.reset();
}

void Keeper::giveBackTouched(const std::vector<WantedCursors::Change>& changes) {
    for (const auto& [window, touched] : touched_) {
        const auto name = touched.name;
        const bool changed =
            std::any_of(changes.begin(), changes.end(), [&](const auto& each) { return each.name == name; });
        // What is set by the core protocol has been replaced by name already.
        if (changed && touched.channel == CursorChannel::device)
            parts_.registration->define(window, name, touched.channel);
        if (on_) continue;
        if (touched.glyph)
            parts_.registration->defineGlyph(window, *touched.glyph);
        else if (!changed)
            parts_.registration->undefine(window, touched.channel);
    }
    // A resting keeper does not see when a program takes its window back.
    if (!on_) touched_.clear();
}

void Keeper::stop() {
    on_ = false;
    waiting_ = false;
    timer_.end();
    touched_.clear();
}

void Keeper::watcherReplaced() {
    lastKnown_.reset();
    if (!on_) return;
    parts_.watcher->listenToCursors(true);
    examine();
}

void Keeper::cursorShown(const ShownCursor& cursor) {
    if (!on_) return;
    lastKnown_ = cursor;
    if (settled_.contains(cursor.serial)) return;
    if (!waiting_)
        examine();
    else if (cursor.serial != subject_.serial)
        examineBesides();
}

KeeperFinding Keeper::judged(const ShownCursor& shown) {
    const auto finding = judge(
        shown, [this](std::string_view name) { return parts_.wanted.themePicture(name); },
        [&](const ShownCursor& each) {
            const auto name = parts_.theme.nameOf(*each.fingerprint);
            if (!name.empty()) return name;
            const auto glyph = glyphOf(each);
            return glyph ? glyph->name : name;
        });
    if (finding.verdict == KeeperVerdict::leave) {
        if (settled_.size() >= kMostSettled) settled_.clear();
        settled_.insert(shown.serial);
    }
    return finding;
}

std::optional<CoreGlyph> Keeper::glyphOf(const ShownCursor& shown) {
    if (!shown.shape) return std::nullopt;
    // Over the connection that may have the server to itself.
    if (!glyphs_) glyphs_.emplace(parts_.registration->connection());
    return glyphs_->find(*shown.shape);
}

void Keeper::examine() {
    const auto shown = read();
    if (!shown) return;
    const auto finding = judged(*shown);
    if (finding.verdict == KeeperVerdict::replace) startWith(*shown, finding.name, 0);
}

void Keeper::examineBesides() {
    const auto shown = read();
    if (!shown) return;
    const auto finding = judged(*shown);
    // The one that is waited for may be an animation, each of whose frames comes to be shown.
    if (finding.verdict == KeeperVerdict::replace && finding.name != subject_.name)
        startWith(*shown, finding.name, 0);
}

void Keeper::startWith(const ShownCursor& shown, std::string_view name, int rounds) {
    const auto pointer = parts_.watcher->pointer();
    if (!pointer || !limit_.allow(pointer->x, pointer->y, queue_.now())) return;
    // A frame without a name may be one of an animation that has a name.
    const auto own = parts_.theme.exact(name);
    if (!shown.name.empty() || (own && own->isAnimated())) {
        parts_.registration->replaceByName(name);
        parts_.registration->connection().synchronize();
    }
    waiting_ = false;
    timer_.end();
    subject_ = {shown.serial, name, rounds + 1, !shown.fingerprint};
    if (pointer->buttonPressed || !setAtOnce(shown, pointer->deepest)) waitFor(kSettleTime);
}

bool Keeper::setAtOnce(const ShownCursor& shown, xcb_window_t window) {
    // A name says only that a program may be about to show what was replaced by it.
    if (!shown.name.empty()) return false;
    return setOn(shown, subject_.name, window) == Outcome::shows;
}

void Keeper::waitFor(std::chrono::milliseconds time) {
    waiting_ = true;
    timer_ = queue_.after(time, [this] {
        waiting_ = false;
        examineAgain();
        haveRead_();
    });
}

void Keeper::examineAgain() {
    const auto before = parts_.watcher->pointer();
    const auto shown = read();
    const auto after = parts_.watcher->pointer();
    if (!shown || !before || !after) return;
    const auto finding = judged(*shown);
    if (finding.verdict == KeeperVerdict::leave) {
        // An animation comes to be shown with a serial of its own before its frames. A cursor with an image
        // that the pointer has only left is one to replace when it comes back.
        if (subject_.begins) settled_.insert(subject_.serial);
        return;
    }
    if (finding.name != subject_.name) return startWith(*shown, finding.name, 0);
    // Frames of an animation have serials of their own; a named cursor with another serial may be one that
    // was made since, so it is replaced by name once more.
    const bool same =
        shown->name.empty() || shown->serial == subject_.serial || subject_.rounds >= kRoundsByName;
    if (!same) return startWith(*shown, finding.name, subject_.rounds);
    if (after->buttonPressed) return waitFor(kButtonTime);
    if (before->deepest != after->deepest) return waitFor(kSettleTime);
    replaceOnWindow(*shown, finding.name, after->deepest);
}

Keeper::Outcome Keeper::setOn(const ShownCursor& shown, std::string_view name, xcb_window_t window) {
    // Never a device cursor first where a program sets private cursors by the core protocol: it would hide
    // all later ones.
    auto outcome = Outcome::refused;
    if (shown.name.empty()) outcome = tryOn(window, name, CursorChannel::core);
    if (outcome == Outcome::refused) outcome = tryOn(window, name, CursorChannel::device);
    return outcome;
}

void Keeper::replaceOnWindow(const ShownCursor& shown, std::string_view name, xcb_window_t window) {
    const auto outcome = setOn(shown, name, window);
    // Something else decides, for instance a grab that began without a button.
    if (outcome == Outcome::refused) settled_.insert(shown.serial);
    if (outcome == Outcome::overtaken) waitFor(kSettleTime);
}

Keeper::Outcome Keeper::tryOn(xcb_window_t window, std::string_view name, CursorChannel channel) {
    auto& registration = *parts_.registration;
    auto& connection = registration.connection();
    // All areas of a program's window may be one window of the server: a cursor that the program sets between
    // the look and the answer would be covered by that of the area which the pointer has left.
    const ServerGrab alone(connection);
    const auto before = x11::shownCursor(connection, lastKnown_);
    const auto pointer = pointerState(connection);
    if (!before || !pointer || pointer->deepest != window) return Outcome::overtaken;
    const auto finding = judged(*before);
    if (finding.verdict == KeeperVerdict::leave) return Outcome::shows;
    // A name whose picture cannot be read yet may be that of an animation of ours that begins.
    const bool unreadYet =
        !before->fingerprint && before->serial != subject_.serial && subject_.rounds < kRoundsByName;
    if (finding.name != name || unreadYet) return Outcome::overtaken;

    registration.define(window, name, channel);
    const auto after = x11::shownCursor(connection, lastKnown_);
    // An animation shows nothing until its first frame is due. Nobody else can have set it.
    const bool begins =
        after && after->serial != before->serial && after->name == name && !after->fingerprint;
    if (begins || (after && judged(*after).verdict == KeeperVerdict::leave)) {
        if (touched_.size() >= kMostTouched) touched_.clear();
        if (window != connection.root())
            touched_.insert_or_assign(window, Touched{name, channel, glyphOf(*before)});
        return Outcome::shows;
    }
    // A core cursor stays: it shows where the program gives its device cursor up. The root window without a
    // device cursor would show the server's bare one.
    if (channel == CursorChannel::device && window != connection.root())
        registration.undefine(window, channel);
    return Outcome::refused;
}

}  // namespace pintle::x11
