#include "tests/mac/fake/mac_world.h"

#include "tests/mac/fake/fake_object.h"
#include "tests/mac/fake/fake_windows.h"

namespace pintle::mac_fake {

void releaseHandedOut();
void forgetAppKit();
std::size_t runLoopMembers();

namespace {

std::unique_ptr<World>& current() {
    static auto* const it = new std::unique_ptr<World>(std::make_unique<World>());
    return *it;
}

}  // namespace

World& world() { return *current(); }

bool fails(const char* function) {
    const int call = ++world().fallibleCalls;
    return call == world().failAt || world().failing.contains(function);
}

void resetWorld() {
    releaseHandedOut();
    forgetAppKit();
    current() = std::make_unique<World>();
}

std::string leftovers() {
    releaseHandedOut();
    std::string all;
    if (distributedObservers() > 0) all += "an observer of the distributed centre\n";
    if (notificationObservers() > 0) all += "an observer of a notification centre\n";
    if (!world().displayCallbacks.empty()) all += "a display callback\n";
    if (runLoopMembers() > 0) all += "a timer or a source of the run loop\n";
    if (liveWindows() > 0) all += "a window\n";
    if (world().openPools > 0) all += "an autorelease pool\n";
    return all + describeLiveObjects();
}

}  // namespace pintle::mac_fake
