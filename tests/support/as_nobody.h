// The rights of a user who owns nothing, for tests of what rights refuse: nothing stops root.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

namespace pintle {

/// While this lives, a test that runs as root has the rights of nobody, who owns `folder` with all that is in
/// it. For anyone else it changes nothing.
class AsNobody {
  public:
    explicit AsNobody(const std::filesystem::path& folder) {
        if (!isRoot_) return;
        give(folder);
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) give(entry.path());
        EXPECT_EQ(::seteuid(kNobody), 0);
    }
    ~AsNobody() {
        if (!isRoot_) return;
        EXPECT_EQ(::seteuid(0), 0);
    }
    AsNobody(const AsNobody&) = delete;
    AsNobody& operator=(const AsNobody&) = delete;

  private:
    static constexpr uid_t kNobody = 65534;
    static void give(const std::filesystem::path& path) {
        EXPECT_EQ(::lchown(path.c_str(), kNobody, static_cast<gid_t>(-1)), 0);
    }
    const bool isRoot_ = ::geteuid() == 0;
};

}  // namespace pintle
