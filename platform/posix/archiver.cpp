#include "platform/posix/archiver.h"

#include <system_error>
#include <utility>

namespace pintle {
namespace {

namespace fs = std::filesystem;

constexpr auto kName = "pintle-unpack";

}  // namespace

fs::path unpackProgram(const fs::path& programFolder) {
    if (!programFolder.is_absolute()) return {};
    auto beside = programFolder / kName;
    std::error_code error;
    if (fs::exists(beside, error)) return beside;
    return programFolder.parent_path() / "libexec" / "pintle" / kName;
}

ProcessSubstitutes limitedArchiver(const fs::path& unpack) {
    ProcessSubstitute archiver;
    // A relative name would be looked up in the current folder or the PATH; an empty one is always missing.
    if (unpack.is_absolute()) archiver.executable = unpack;
    // Nothing of the user's environment may change what is read or which libraries read it.
    archiver.environment = {{"LC_ALL", "C.UTF-8"}};
    archiver.missing = "The program pintle-unpack is missing; install Pintle again";
    return {{"/usr/bin/tar", std::move(archiver)}};
}

ProcessSubstitutes limitedArchiver() {
    std::error_code error;
    return limitedArchiver(unpackProgram(fs::read_symlink("/proc/self/exe", error).parent_path()));
}

}  // namespace pintle
