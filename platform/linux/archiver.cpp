#include "platform/linux/archiver.h"

namespace pintle {

ProcessSubstitutes linuxArchiver() {
    ProcessSubstitute archiver;
    archiver.executable = "/usr/bin/bsdtar";
    archiver.arguments = {"--no-same-owner", "--no-same-permissions", "--no-acls", "--no-fflags",
                          "--no-xattrs"};
    // In any other character set, names outside ASCII cannot be written.
    archiver.environment = {{"LC_ALL", "C.UTF-8"}};
    archiver.missing = "The archiver bsdtar is missing; install the package libarchive-tools";
    return {{"/usr/bin/tar", std::move(archiver)}};
}

}  // namespace pintle
