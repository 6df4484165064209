// The archiver of this desktop. Used by the root.
#pragma once

#include <filesystem>

#include "platform/process_runner.h"

namespace pintle {

/// Where the program that unpacks archives belongs to one in `programFolder`, an absolute path: beside it, or
/// else in "../libexec/pintle". It need not be there. Empty for a path that is not absolute.
std::filesystem::path unpackProgram(const std::filesystem::path& programFolder);

/// "/usr/bin/tar" is the program at `unpack` here: tar and zip archives alone, with no other program's help
/// and nothing of the user's environment. A path that is not absolute counts as a missing program. It
/// restores neither owners, times nor permissions beyond the usual ones, nor anything else that a file can
/// carry besides its bytes.
ProcessSubstitutes limitedArchiver(const std::filesystem::path& unpack);
/// The same with the one that belongs to this program.
ProcessSubstitutes limitedArchiver();

}  // namespace pintle
