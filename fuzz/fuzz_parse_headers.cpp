// The input is an Xcursor file whose chunk headers are read from disk.
#include <cstdlib>

#include "cursor/xcursor_parser.h"
#include "fuzz/input_file.h"
#include "tests/support/plain_xcursor_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    const std::span data(bytes, count);
    const auto headers = pintle::XCursorParser::parseHeaders(pintle::inputFile(data));
    if (headers != pintle::PlainXCursorReader(data).headers()) std::abort();
    return 0;
}
