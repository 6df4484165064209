// The input is what an update server answers, and the number of a build.
#include <cerrno>
#include <nlohmann/json.hpp>
#include <string>

#include "fuzz/choices.h"
#include "settings/version_document.h"

namespace pintle {
namespace {

/// The rule written plainly, with the C library's reader.
std::int64_t plainBuildNumber(const std::string& text) {
    const std::size_t sign = !text.empty() && (text.front() == '-' || text.front() == '+') ? 1 : 0;
    if (text.size() == sign || text.find_first_not_of("0123456789", sign) != std::string::npos) return 0;
    errno = 0;
    const long long number = std::strtoll(text.c_str(), nullptr, 10);
    return errno == ERANGE ? 0 : number;
}

}  // namespace
}  // namespace pintle

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    using namespace pintle;
    const auto text = textOf({bytes, count});
    require(parseBuildNumber(text) == plainBuildNumber(std::string(text)));
    const auto read = decodeVersionDocument(text);
    // Blanks behind a document mean nothing, more text makes it none.
    require(decodeVersionDocument(std::string(text) + "\t\n") == read);
    require(!read || !decodeVersionDocument(std::string(text) + "{}"));
    if (!read) return 0;
    const auto written = nlohmann::json{{"build", read->build}, {"version", read->version}}.dump();
    require(decodeVersionDocument(written) == read);
    return 0;
}
