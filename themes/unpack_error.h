// What a user reads when the archiver fails. Used by the extraction; any thread.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace pintle {

/// The last `count` characters of a text, trimmed of white space and line ends at both ends. Whatever is no
/// valid UTF-8, or a control character that a preference file cannot hold, becomes U+FFFD.
std::string lastCharacters(std::string_view text, std::size_t count);

/// The end of the archiver's error output. Without output: the error of appending to that file, as on a full
/// disk, else "exit code " and the status.
std::string unpackErrorText(const std::filesystem::path& errorFile, int status);

}  // namespace pintle
