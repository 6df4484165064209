// pintle-unpack -xf ARCHIVE -C FOLDER: unpacks an archive into a folder, as a process of its own so that what
// a stranger's bytes do to it stays in it. Answers 0, or 1 with the reason on standard error.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <cstring>
#include <string>
#include <string_view>

#include "platform/posix/unpack/confinement.h"
#include "platform/posix/unpack/unpack_archive.h"

namespace {

int fail(const std::string& words) {
    const std::string line = "pintle-unpack: " + words + "\n";
    const auto written = ::write(STDERR_FILENO, line.data(), line.size());
    (void)written;
    return 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 5 || std::string_view(argv[1]) != "-xf" || std::string_view(argv[3]) != "-C")
        return fail("Usage: pintle-unpack -xf ARCHIVE -C FOLDER");
    // In any other character set, names outside ASCII cannot be written.
    if (!std::setlocale(LC_CTYPE, "C.UTF-8")) std::setlocale(LC_CTYPE, "");
    ::umask(022);
    // Non-blocking: a FIFO under this name would wait for a writer.
    const int archive = ::open(argv[2], O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    struct stat info = {};
    if (archive < 0 || ::fstat(archive, &info) != 0)
        return fail("Error opening archive: Failed to open '" + std::string(argv[2]) +
                    "': " + std::strerror(errno));
    if (!S_ISREG(info.st_mode))
        return fail("Error opening archive: '" + std::string(argv[2]) + "' is no file");
    if (::chdir(argv[4]) != 0)
        return fail("could not chdir to '" + std::string(argv[4]) + "': " + std::strerror(errno));
    pintle::limitResources();
    pintle::confineToCurrentFolder();
    const auto problem = pintle::unpackArchive(archive);
    return problem ? fail(*problem) : 0;
}
