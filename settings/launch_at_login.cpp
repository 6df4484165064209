#include "settings/launch_at_login.h"

#include <fmt/format.h>

#include <utility>

#include "settings/typed_defaults.h"

namespace pintle {
namespace {

constexpr auto kLaunchAtLogin = "launchAtLogin";
constexpr auto kLoginItemPath = "loginItemPath";

}  // namespace

LaunchAtLogin::LaunchAtLogin(LoginItemService& service, LoginAgent& agent, KeyValueStore& defaults, Log& log,
                             ProgramLocation program, LoginAgentRole role)
    : service_(service),
      agent_(agent),
      defaults_(defaults),
      log_(log),
      program_(std::move(program)),
      role_(role) {}

void LaunchAtLogin::setLaunchAtLogin(bool enabled) {
    const auto answer = enabled ? service_.registerItem() : service_.unregisterItem();
    if (answer) {
        if (enabled) storeRegisteredPath();
        const auto status = service_.status();
        const bool success = enabled == (status == LoginItemStatus::enabled);
        log_.system(fmt::format("[LaunchAtLogin] SMAppService status: {}, success: {}",
                                static_cast<int>(status), success ? 1 : 0));
        if (success) return;
    } else {
        log_.system(fmt::format("[LaunchAtLogin] SMAppService failed: {}", answer.error().description));
    }
    log_.system("[LaunchAtLogin] Using LaunchAgent fallback");
    setLaunchAtLoginViaLaunchAgent(enabled);
}

void LaunchAtLogin::setLaunchAtLoginViaLaunchAgent(bool enabled) {
    if (!enabled) {
        if (!agent_.exists()) return;
        const auto removed = agent_.remove();
        if (removed)
            log_.system("[LaunchAgent] Removed plist");
        else
            log_.system(fmt::format("[LaunchAgent] ERROR removing plist: {}", removed.error().description));
        return;
    }
    if (!program_.executablePath) {
        log_.system("[LaunchAgent] ERROR: Cannot find executable path");
        return;
    }
    const auto written = agent_.write(*program_.executablePath);
    if (written)
        log_.system(fmt::format("[LaunchAgent] Created plist at: {}", agent_.path().string()));
    else
        log_.system(fmt::format("[LaunchAgent] ERROR writing plist: {}", written.error().description));
}

bool LaunchAtLogin::launchAgentPlistExists() const { return agent_.exists(); }

void LaunchAtLogin::syncLaunchAtLoginState() {
    const bool registered = service_.status() == LoginItemStatus::enabled;
    defaults_.set(kLaunchAtLogin, registered || launchAgentPlistExists());
}

void LaunchAtLogin::refreshLoginItemLocation() {
    if (!boolValue(defaults_, kLaunchAtLogin)) return;

    const bool agentIsOurs = role_ == LoginAgentRole::standsInForService && agent_.exists();
    const bool agentIsRight = agentIsOurs && agent_.program() == program_.executablePath;
    if (agentIsRight) {
        if (registeredPath() != program_.bundlePath) storeRegisteredPath();
        return;
    }

    if (registeredPath() != program_.bundlePath) {
        (void)service_.unregisterItem();
        const auto answer = service_.registerItem();
        if (answer) {
            storeRegisteredPath();
            log_.system(fmt::format("[LaunchAtLogin] Login item re-pointed to {}", program_.bundlePath));
        } else {
            log_.system(fmt::format("[LaunchAtLogin] Re-register failed: {}", answer.error().description));
        }
    }
    if (agentIsOurs) {
        setLaunchAtLoginViaLaunchAgent(true);
        if (agent_.program() == program_.executablePath) storeRegisteredPath();
    }
}

std::optional<std::string> LaunchAtLogin::registeredPath() const {
    const auto stored = defaults_.object(kLoginItemPath);
    const auto* path = stored ? stored->as<std::string>() : nullptr;
    return path ? std::optional(*path) : std::nullopt;
}

void LaunchAtLogin::storeRegisteredPath() { defaults_.set(kLoginItemPath, program_.bundlePath); }

}  // namespace pintle
