// Changes a preference file at random until it is killed or has made enough changes, and reports each change
// on standard output before and after.
//
//   survival_writer FILE PREFIX SEED FIRST COUNT
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>

#include "platform/fake/fake_log.h"
#include "platform/fake/virtual_scheduler.h"
#include "platform/plist/plist_coder.h"
#include "platform/plist/plist_key_value_store.h"
#include "tests/contract/session/survival.h"

namespace {

void report(const std::string& line) {
    if (::write(STDOUT_FILENO, line.data(), line.size()) != static_cast<ssize_t>(line.size())) ::_exit(4);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 6) return 2;
    const std::string prefix = argv[2];
    std::mt19937_64 random(std::strtoull(argv[3], nullptr, 10));
    const long first = std::atol(argv[4]);
    const long count = std::atol(argv[5]);

    pintle::VirtualScheduler scheduler;
    pintle::FakeLog log;
    const auto coder = pintle::makePlistCoder();
    const auto store = pintle::makePlistKeyValueStore(argv[1], *coder, log, scheduler.mainQueue(),
                                                      scheduler.backgroundTasks());
    for (long number = first; number < first + count; ++number) {
        const std::string key = prefix + std::to_string(random() % 20);
        const int kind = static_cast<int>(random() % pintle::survival::kKinds);
        const std::string change = key + " " + std::to_string(kind) + " " + std::to_string(number) + "\n";
        report("> " + change);
        if (kind == 0)
            store->remove(key);
        else
            store->set(key, pintle::survival::valueOf(kind, number));
        report("< " + change);
        // Brings the file to the disk from time to time.
        scheduler.advance(std::chrono::milliseconds(2));
    }
    for (const auto& line : log.systemLines) std::fprintf(stderr, "%s\n", line.c_str());
    return log.systemLines.empty() ? 0 : 3;
}
