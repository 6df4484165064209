#include "platform/mac/mac_login_item_service.h"

#import <ServiceManagement/ServiceManagement.h>

#include "platform/mac/ns_text.h"

namespace pintle {
namespace {

static_assert(static_cast<int>(LoginItemStatus::notRegistered) == SMAppServiceStatusNotRegistered);
static_assert(static_cast<int>(LoginItemStatus::enabled) == SMAppServiceStatusEnabled);
static_assert(static_cast<int>(LoginItemStatus::requiresApproval) == SMAppServiceStatusRequiresApproval);
static_assert(static_cast<int>(LoginItemStatus::notFound) == SMAppServiceStatusNotFound);

Status answer(BOOL done, NSError* error) {
    if (done) return Done{};
    return Error{fromNsString(error.domain), static_cast<int>(error.code),
                 fromNsString(error.localizedDescription)};
}

class MacLoginItemService : public LoginItemService {
  public:
    Status registerItem() override {
        NSError* error = nil;
        const BOOL done = [SMAppService.mainAppService registerAndReturnError:&error];
        return answer(done, error);
    }
    Status unregisterItem() override {
        NSError* error = nil;
        const BOOL done = [SMAppService.mainAppService unregisterAndReturnError:&error];
        return answer(done, error);
    }
    LoginItemStatus status() override {
        return static_cast<LoginItemStatus>(SMAppService.mainAppService.status);
    }
};

}  // namespace

std::unique_ptr<LoginItemService> makeMacLoginItemService() {
    return std::make_unique<MacLoginItemService>();
}

}  // namespace pintle
