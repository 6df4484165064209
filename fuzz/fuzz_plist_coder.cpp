// The input describes a value. What can be written as a property list reads as it was.
#include <bit>
#include <optional>
#include <string>
#include <vector>

#include "fuzz/choices.h"
#include "fuzz/same_property.h"
#include "platform/plist/plist_coder.h"

namespace pintle {
namespace {

PropertyValue valueFrom(Choices& choices, int depth) {
    const auto kind = choices.byte() % (depth < 6 ? 10 : 8);
    switch (kind) {
        case 0:
            return choices.flag();
        case 1:
            return static_cast<std::int64_t>(choices.number(8));
        case 2:
            return static_cast<std::int64_t>(static_cast<std::int8_t>(choices.byte()));
        case 3:
            return std::bit_cast<double>(choices.number(8));
        case 4:
            return static_cast<double>(choices.number(2)) / 100;
        case 5:
            return choices.text();
        case 6: {
            const auto text = choices.text();
            return PropertyData(text.begin(), text.end());
        }
        case 7:
            return PropertyDate{choices.flag()
                                    ? static_cast<double>(static_cast<std::int32_t>(choices.number(4))) / 16
                                    : static_cast<double>(static_cast<std::int64_t>(choices.number(6)) -
                                                          (std::int64_t{1} << 37))};
        case 8: {
            PropertyArray array;
            const auto count = choices.below(20);
            for (std::size_t i = 0; i < count && !choices.isEmpty(); ++i)
                array.push_back(valueFrom(choices, depth + 1));
            return array;
        }
        default: {
            PropertyDictionary dictionary;
            const auto count = choices.below(20);
            for (std::size_t i = 0; i < count && !choices.isEmpty(); ++i) {
                auto key = choices.text();
                dictionary.insert_or_assign(std::move(key), valueFrom(choices, depth + 1));
            }
            return dictionary;
        }
    }
}

}  // namespace
}  // namespace pintle

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    using namespace pintle;
    Choices choices({bytes, count});
    const auto value = valueFrom(choices, 0);
    const auto coder = makePlistCoder();
    for (const auto format : {PropertyListFormat::binary, PropertyListFormat::xml}) {
        const auto written = coder->encode(value, format);
        if (!written) continue;
        const auto read = coder->decode(*written);
        require(read && sameProperty(value, *read, format));
    }
    return 0;
}
