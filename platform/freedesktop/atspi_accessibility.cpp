#include "platform/freedesktop/atspi_accessibility.h"

#include <atspi/atspi.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace pintle::overlay {
namespace {

/// Milliseconds that one answer of an application may take.
constexpr int kAnswerLimit = 150;
/// What lies under a pointer at rest may change, and an application that was busy may answer later.
constexpr std::chrono::milliseconds kAnswerAge{500};
constexpr int kDeepestNesting = 64;

template <typename T>
struct Unref {
    void operator()(T* object) const { g_object_unref(object); }
};
template <typename T>
using Owned = std::unique_ptr<T, Unref<T>>;

/// The library ends the whole program when it has to reach for a service that is not there.
bool isServiceThere() {
    DBusConnection* const bus = atspi_get_a11y_bus();
    return bus && dbus_connection_get_is_connected(bus);
}

bool isShowing(AtspiAccessible* accessible) {
    AtspiStateSet* const set = atspi_accessible_get_state_set(accessible);
    if (!set) return false;
    const bool showing = atspi_state_set_contains(set, ATSPI_STATE_SHOWING);
    g_object_unref(set);
    return showing;
}

Owned<AtspiAccessible> elementUnder(AtspiAccessible* start, int x, int y) {
    Owned<AtspiAccessible> deepest;
    AtspiAccessible* current = start;
    for (int depth = 0; depth < kDeepestNesting; ++depth) {
        const Owned<AtspiComponent> component(atspi_accessible_get_component_iface(current));
        if (!component) break;
        Owned<AtspiAccessible> next(
            atspi_component_get_accessible_at_point(component.get(), x, y, ATSPI_COORD_TYPE_SCREEN, nullptr));
        if (!next || next.get() == current) break;
        deepest = std::move(next);
        current = deepest.get();
    }
    return deepest;
}

bool contains(AtspiAccessible* window, int x, int y) {
    const Owned<AtspiComponent> component(atspi_accessible_get_component_iface(window));
    return component &&
           atspi_component_contains(component.get(), x, y, ATSPI_COORD_TYPE_SCREEN, nullptr) != 0;
}

/// The role by the name that the rules know, absent for every other role.
std::optional<std::string> roleName(AtspiAccessible* element) {
    switch (atspi_accessible_get_role(element, nullptr)) {
        case ATSPI_ROLE_ENTRY:
        case ATSPI_ROLE_PASSWORD_TEXT:
            return "AXTextField";
        case ATSPI_ROLE_TEXT:
        case ATSPI_ROLE_PARAGRAPH:
        case ATSPI_ROLE_DOCUMENT_TEXT:
            return "AXTextArea";
        case ATSPI_ROLE_COMBO_BOX: {
            AtspiStateSet* const set = atspi_accessible_get_state_set(element);
            const bool editable = set && atspi_state_set_contains(set, ATSPI_STATE_EDITABLE);
            if (set) g_object_unref(set);
            return editable ? std::optional<std::string>("AXComboBox") : std::nullopt;
        }
        case ATSPI_ROLE_LINK:
            return "AXLink";
        default:
            return std::nullopt;
    }
}

std::optional<std::string> roleAtPixel(int x, int y) {
    const Owned<AtspiAccessible> desktop(atspi_get_desktop(0));
    if (!desktop) return std::nullopt;
    std::optional<std::string> answer;
    const int applications = atspi_accessible_get_child_count(desktop.get(), nullptr);
    for (int i = 0; i < applications; ++i) {
        const Owned<AtspiAccessible> application(
            atspi_accessible_get_child_at_index(desktop.get(), i, nullptr));
        if (!application) continue;
        const int windows = atspi_accessible_get_child_count(application.get(), nullptr);
        for (int k = 0; k < windows; ++k) {
            const Owned<AtspiAccessible> window(
                atspi_accessible_get_child_at_index(application.get(), k, nullptr));
            if (!window || !isShowing(window.get()) || !contains(window.get(), x, y)) continue;
            if (const auto element = elementUnder(window.get(), x, y))
                if (auto role = roleName(element.get())) answer = std::move(role);
        }
    }
    return answer;
}

/// What the main thread and the asking thread share. The thread may outlast the object that began it: an
/// answer that hangs must not hold up the end of the program.
struct Conversation {
    struct Question {
        TopLeftPoint point;
        int x = 0;
        int y = 0;
    };

    std::atomic<bool> reachable = false;
    std::mutex mutex;
    std::condition_variable wake;
    bool ended = false;
    std::optional<Question> wanted;
    std::optional<TopLeftPoint> answered;
    std::optional<std::string> role;
};

void converse(const std::shared_ptr<Conversation>& shared) {
    if (!isServiceThere() || atspi_init() > 1) return;
    atspi_set_timeout(kAnswerLimit, kAnswerLimit);
    shared->reachable = true;
    while (true) {
        Conversation::Question question;
        {
            std::unique_lock lock(shared->mutex);
            shared->wake.wait(lock, [&] { return shared->ended || shared->wanted; });
            if (shared->ended) return;
            question = *shared->wanted;
            shared->wanted.reset();
        }
        shared->reachable = isServiceThere();
        auto role = shared->reachable ? roleAtPixel(question.x, question.y) : std::nullopt;
        const std::lock_guard lock(shared->mutex);
        shared->answered = question.point;
        shared->role = std::move(role);
    }
}

class AtspiAccessibility : public Accessibility {
  public:
    explicit AtspiAccessibility(std::function<std::pair<int, int>(TopLeftPoint)> rootPixelAt)
        : rootPixelAt_(std::move(rootPixelAt)) {}
    ~AtspiAccessibility() override {
        {
            const std::lock_guard lock(shared_->mutex);
            shared_->ended = true;
        }
        shared_->wake.notify_all();
    }

    bool isProcessTrusted() override {
        if (!begun_) {
            begun_ = true;
            std::thread(converse, shared_).detach();
        }
        return shared_->reachable;
    }

    std::optional<std::string> roleAt(TopLeftPoint point) override {
        const auto [x, y] = rootPixelAt_(point);
        const auto now = std::chrono::steady_clock::now();
        const std::lock_guard lock(shared_->mutex);
        if (asked_ != point || now - askedAt_ > kAnswerAge) {
            asked_ = point;
            askedAt_ = now;
            shared_->wanted = {point, x, y};
            shared_->wake.notify_all();
        }
        return shared_->answered == point ? shared_->role : std::nullopt;
    }

  private:
    std::function<std::pair<int, int>(TopLeftPoint)> rootPixelAt_;
    std::shared_ptr<Conversation> shared_ = std::make_shared<Conversation>();
    bool begun_ = false;
    std::optional<TopLeftPoint> asked_;
    std::chrono::steady_clock::time_point askedAt_;
};

}  // namespace

std::unique_ptr<Accessibility> makeAtspiAccessibility(
    std::function<std::pair<int, int>(TopLeftPoint)> rootPixelAt) {
    return std::make_unique<AtspiAccessibility>(std::move(rootPixelAt));
}

}  // namespace pintle::overlay
