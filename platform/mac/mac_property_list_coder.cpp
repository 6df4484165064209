#include "platform/mac/mac_property_list_coder.h"

#include "platform/mac/cf_property.h"

namespace pintle {
namespace {

class MacPropertyListCoder : public PropertyListCoder {
  public:
    std::optional<std::vector<std::uint8_t>> encode(const PropertyValue& value,
                                                    PropertyListFormat format) override {
        const auto list = toCfProperty(value);
        if (!list) return std::nullopt;
        const auto data = CfRef<CFDataRef>::adopt(
            CFPropertyListCreateData(kCFAllocatorDefault, list.get(),
                                     format == PropertyListFormat::xml ? kCFPropertyListXMLFormat_v1_0
                                                                       : kCFPropertyListBinaryFormat_v1_0,
                                     0, nullptr));
        if (!data) return std::nullopt;
        const UInt8* const bytes = CFDataGetBytePtr(data.get());
        return std::vector<std::uint8_t>(bytes, bytes + CFDataGetLength(data.get()));
    }

    std::optional<PropertyValue> decode(std::span<const std::uint8_t> bytes) override {
        const auto data = CfRef<CFDataRef>::adopt(
            CFDataCreate(kCFAllocatorDefault, bytes.data(), static_cast<CFIndex>(bytes.size())));
        if (!data) return std::nullopt;
        CFPropertyListFormat format = kCFPropertyListBinaryFormat_v1_0;
        const auto list = CfRef<CFTypeRef>::adopt(CFPropertyListCreateWithData(
            kCFAllocatorDefault, data.get(), kCFPropertyListImmutable, &format, nullptr));
        // The service reads a third, older form that this program neither writes nor takes.
        if (format != kCFPropertyListXMLFormat_v1_0 && format != kCFPropertyListBinaryFormat_v1_0)
            return std::nullopt;
        return fromCfProperty(list.get());
    }
};

}  // namespace

std::unique_ptr<PropertyListCoder> makeMacPropertyListCoder() {
    return std::make_unique<MacPropertyListCoder>();
}

}  // namespace pintle
