// The archiver of this desktop. Used by the root.
#pragma once

#include "platform/process_runner.h"

namespace pintle {

/// "/usr/bin/tar" is bsdtar of libarchive here, because GNU tar reads no zip archives. It restores neither
/// owners nor permissions beyond the usual ones, nor anything else that a file can carry besides its bytes.
ProcessSubstitutes linuxArchiver();

}  // namespace pintle
