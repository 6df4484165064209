#include "platform/posix/unpack/confinement.h"

#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdint>

namespace pintle {
namespace {

/// More than any decoder of the readable kinds needs; a dictionary larger than that is refused as a lack of
/// memory.
constexpr rlim_t kMemory = rlim_t{768} << 20;
constexpr rlim_t kDescriptors = 64;

/// The first version that lets a hard link lead to another folder.
constexpr long kOldestUsable = 2;
constexpr std::uint64_t kTruncate = std::uint64_t{1} << 14;
constexpr long kHasTruncate = 3;

void limit(__rlimit_resource resource, rlim_t most) {
    rlimit now = {};
    if (::getrlimit(resource, &now) != 0) return;
    if (now.rlim_cur > most) now.rlim_cur = most;
    if (now.rlim_max > most) now.rlim_max = most;
    ::setrlimit(resource, &now);
}

}  // namespace

void limitResources() {
    limit(RLIMIT_CORE, 0);
    limit(RLIMIT_AS, kMemory);
    limit(RLIMIT_NOFILE, kDescriptors);
    limit(RLIMIT_NPROC, 0);
}

void confineToCurrentFolder() {
    if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) return;
    const long version = ::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
    if (version < kOldestUsable) return;
    // Every right on files that the version knows; those that are not allowed below are gone.
    constexpr std::uint64_t allowed = LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_READ_FILE |
                                      LANDLOCK_ACCESS_FS_READ_DIR | LANDLOCK_ACCESS_FS_REMOVE_DIR |
                                      LANDLOCK_ACCESS_FS_REMOVE_FILE | LANDLOCK_ACCESS_FS_MAKE_DIR |
                                      LANDLOCK_ACCESS_FS_MAKE_REG | LANDLOCK_ACCESS_FS_MAKE_SYM |
                                      LANDLOCK_ACCESS_FS_MAKE_FIFO | LANDLOCK_ACCESS_FS_REFER;
    constexpr std::uint64_t denied = LANDLOCK_ACCESS_FS_EXECUTE | LANDLOCK_ACCESS_FS_MAKE_CHAR |
                                     LANDLOCK_ACCESS_FS_MAKE_SOCK | LANDLOCK_ACCESS_FS_MAKE_BLOCK;
    const std::uint64_t truncate = version >= kHasTruncate ? kTruncate : 0;
    landlock_ruleset_attr handled = {};
    handled.handled_access_fs = allowed | denied | truncate;
    const auto rules = static_cast<int>(::syscall(SYS_landlock_create_ruleset, &handled, sizeof handled, 0));
    if (rules < 0) return;
    landlock_path_beneath_attr below = {};
    below.allowed_access = allowed | truncate;
    below.parent_fd = ::open(".", O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (below.parent_fd >= 0) {
        if (::syscall(SYS_landlock_add_rule, rules, LANDLOCK_RULE_PATH_BENEATH, &below, 0) == 0)
            ::syscall(SYS_landlock_restrict_self, rules, 0);
        ::close(below.parent_fd);
    }
    ::close(rules);
}

}  // namespace pintle
