#include "platform/mac/mac_accessibility.h"

#include <ApplicationServices/ApplicationServices.h>

#include "platform/mac/cf.h"

namespace pintle {
namespace {

constexpr float kTimeoutSeconds = 0.05F;

class MacAccessibility : public Accessibility {
  public:
    MacAccessibility() : systemWide_(CfRef<AXUIElementRef>::adopt(AXUIElementCreateSystemWide())) {
        AXUIElementSetMessagingTimeout(systemWide_.get(), kTimeoutSeconds);
    }

    bool isProcessTrusted() override { return AXIsProcessTrusted() != 0; }

    std::optional<std::string> roleAt(TopLeftPoint point) override {
        AXUIElementRef found = nullptr;
        const AXError elementError = AXUIElementCopyElementAtPosition(
            systemWide_.get(), static_cast<float>(point.x), static_cast<float>(point.y), &found);
        const auto element = CfRef<AXUIElementRef>::adopt(found);
        if (elementError != kAXErrorSuccess || !element) return std::nullopt;
        CFTypeRef value = nullptr;
        const AXError roleError =
            AXUIElementCopyAttributeValue(element.get(), cfString("AXRole").get(), &value);
        const auto role = CfRef<CFTypeRef>::adopt(value);
        if (roleError != kAXErrorSuccess || !role || CFGetTypeID(role.get()) != CFStringGetTypeID())
            return std::nullopt;
        return fromCfString(role.get());
    }

  private:
    const CfRef<AXUIElementRef> systemWide_;
};

}  // namespace

std::unique_ptr<Accessibility> makeMacAccessibility() { return std::make_unique<MacAccessibility>(); }

}  // namespace pintle
