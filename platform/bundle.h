// What this program is called and where it lies. Fixed for the life of the process.
#pragma once

#include <filesystem>
#include <string>

namespace pintle {

struct Bundle {
    /// Reverse domain name; also the name of the preference domain.
    std::string identifier = "com.pintle.app";
    /// For people, for example "0.1.0".
    std::string shortVersion;
    /// Compared with other builds.
    std::string build;
    std::filesystem::path executable;
};

/// The folders that the program may write to, handed in by the root.
struct UserDirectories {
    /// Application Support of the user; the program's data is in its folder "Pintle".
    std::filesystem::path applicationSupport;
    std::filesystem::path temporary;
    std::filesystem::path home;
};

}  // namespace pintle
