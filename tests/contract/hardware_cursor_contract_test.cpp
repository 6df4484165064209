#include <gmock/gmock.h>

#include <memory>
#include <set>
#include <vector>

#include "platform/fake/fake_hardware_cursor.h"
#include "platform/x11/cursors/x11_hardware_cursor.h"

namespace pintle {
namespace {

struct FakeCursors {
    static std::unique_ptr<HardwareCursor> make() { return std::make_unique<FakeHardwareCursor>(); }
};
struct LinuxCursors {
    static std::unique_ptr<HardwareCursor> make() { return makeHardwareCursor(); }
};

using HardwareCursors = ::testing::Types<FakeCursors, LinuxCursors>;

}  // namespace
}  // namespace pintle

#include "tests/contract/hardware_cursor_contract.h"
