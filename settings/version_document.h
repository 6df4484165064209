// The published version, as the update endpoint gives it. Pure; any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace pintle {

struct RemoteVersion {
    /// For people, for example "1.4.0"; never compared.
    std::string version;
    /// Grows with every release; the only value that is compared.
    std::int64_t build = 0;
    friend bool operator==(const RemoteVersion&, const RemoteVersion&) = default;
};

/// Decodes a JSON object with the string "version" and the integer "build"; further keys are ignored. Absent
/// for anything else: another type, a number with a fraction or an exponent or out of range, text after the
/// object.
std::optional<RemoteVersion> decodeVersionDocument(std::string_view json);

/// The number of a build as a bundle writes it: decimal digits with an optional sign and nothing else. 0 for
/// any other text and for a number out of range.
std::int64_t parseBuildNumber(std::string_view text);

}  // namespace pintle
