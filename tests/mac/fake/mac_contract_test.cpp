// The contracts of the other desktops' backends, kept by the backend of macOS over the fakes.
#include <gmock/gmock.h>

#include "platform/mac/mac_hardware_cursor.h"
#include "platform/mac/mac_image_service.h"
#include "platform/mac/mac_key_value_store.h"
#include "platform/mac/mac_main_queue.h"
#include "platform/mac/mac_property_list_coder.h"
#include "platform/qt/qt_background_tasks.h"
#include "tests/mac/fake/mac_world.h"

namespace pintle {
namespace {

struct MacImages {
    static std::unique_ptr<ImageService> make() { return makeMacImageService(); }
};
using ImageServices = ::testing::Types<MacImages>;

struct MacLists {
    static std::unique_ptr<PropertyListCoder> make() { return makeMacPropertyListCoder(); }
};
using PropertyListCoders = ::testing::Types<MacLists>;

struct MacCursors {
    static std::unique_ptr<HardwareCursor> make() { return makeMacHardwareCursor(); }
};
using HardwareCursors = ::testing::Types<MacCursors>;

struct MacDomain {
    static std::unique_ptr<KeyValueStore> open() { return makeMacKeyValueStore("com.pintle.app"); }
};
using KeyValueDomains = ::testing::Types<MacDomain>;

class MacQueueWorld {
  public:
    MainQueue& queue() { return *queue_; }
    BackgroundTasks& tasks() { return *tasks_; }
    bool runUntil(const std::function<bool()>& reached) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!reached()) {
            if (std::chrono::steady_clock::now() > deadline) return false;
            mac_fake::runLoopOnce(0.005);
        }
        return true;
    }
    void letPass(std::chrono::nanoseconds duration) {
        const auto end = std::chrono::steady_clock::now() + duration;
        while (std::chrono::steady_clock::now() < end) {
        }
    }
    void end() {
        tasks_.reset();
        queue_.reset();
    }

  private:
    std::unique_ptr<MainQueue> queue_ = makeMacMainQueue();
    std::unique_ptr<BackgroundTasks> tasks_ = makeQtBackgroundTasks(2);
};
using QueueWorlds = ::testing::Types<MacQueueWorld>;

}  // namespace
}  // namespace pintle

#include "tests/contract/hardware_cursor_contract.h"
#include "tests/contract/image_service_contract.h"
#include "tests/contract/key_value_store_contract.h"
#include "tests/contract/main_queue_contract.h"
#include "tests/contract/property_list_coder_contract.h"
