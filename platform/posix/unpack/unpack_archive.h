// Unpacks one archive of a stranger: tar, also in gzip, bzip2 or xz, and zip. Nothing else is recognised, and
// no other program is ever asked to help.
#pragma once

#include <optional>
#include <string>

namespace pintle {

/// Unpacks into the current folder what is read from `archive`, an open file that stays the caller's. Absent
/// when all went well; else the first thing that did not, in words for people. Unpacking ends there.
///
/// Files, folders, links and hard links are made with the permissions of the process, never with owners,
/// times or special bits; their owner may always use them. Leading slashes are dropped. Names with "..", and
/// names that lead through a link, are refused, and so are devices and sockets.
std::optional<std::string> unpackArchive(int archive);

}  // namespace pintle
