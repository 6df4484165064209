// The input is an Xcursor file whose table of contents is read.
#include <cstdlib>

#include "cursor/xcursor_parser.h"
#include "tests/support/plain_xcursor_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    const std::span data(bytes, count);
    if (pintle::XCursorParser::parseTOC(data) != pintle::PlainXCursorReader(data).toc()) std::abort();
    return 0;
}
