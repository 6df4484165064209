// The input is a property list that somebody wrote. What is read of it can be written and reads the same.
#include <optional>
#include <string>
#include <vector>

#include "fuzz/choices.h"
#include "fuzz/same_property.h"
#include "platform/plist/plist_coder.h"
#include "platform/plist/plist_guard.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    using namespace pintle;
    const std::span data(bytes, count);
    if (const auto plain = plainXmlPropertyList(data)) {
        // The plain form is the plain form of itself.
        const std::span again(reinterpret_cast<const std::uint8_t*>(plain->data()), plain->size());
        require(plainXmlPropertyList(again) == plain);
    }
    const auto coder = makePlistCoder();
    const auto value = coder->decode(data);
    if (!value) return 0;
    const auto written = coder->encode(*value, PropertyListFormat::binary);
    require(written.has_value());
    const auto read = coder->decode(*written);
    require(read && sameProperty(*value, *read, PropertyListFormat::binary));
    return 0;
}
