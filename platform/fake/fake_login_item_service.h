// A login-item service with scripted answers and a transcript of its calls.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/login_item_service.h"

namespace pintle {

class FakeLoginItemService : public LoginItemService {
  public:
    Status registerItem() override {
        calls.push_back("register");
        if (registerError) return Error{"SMAppServiceErrorDomain", 1, *registerError};
        current = statusAfterRegister;
        return Done{};
    }
    Status unregisterItem() override {
        calls.push_back("unregister");
        if (unregisterError) return Error{"SMAppServiceErrorDomain", 2, *unregisterError};
        current = statusAfterUnregister;
        return Done{};
    }
    LoginItemStatus status() override {
        calls.push_back("status");
        return current;
    }

    std::optional<std::string> registerError;
    std::optional<std::string> unregisterError;
    LoginItemStatus statusAfterRegister = LoginItemStatus::enabled;
    LoginItemStatus statusAfterUnregister = LoginItemStatus::notRegistered;
    LoginItemStatus current = LoginItemStatus::notRegistered;
    std::vector<std::string> calls;
};

}  // namespace pintle
