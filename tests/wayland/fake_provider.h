// A place for settings in memory, which fails or stops when the test says so.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "platform/wayland/settings_provider.h"

namespace pintle::wayland {

/// Thrown where the program is killed.
struct Killed : std::runtime_error {
    Killed() : std::runtime_error("killed") {}
};

/// What outlives the program.
struct FakeSettings {
    PointerSetting value;
    bool readable = true;
    bool writable = true;
    bool knowsPresent = true;
    bool reachesRunning = true;
    std::vector<PointerSetting> writes = {};
    /// Steps that may still be made before the program is killed; below zero: no end.
    int* stepsLeft = nullptr;
};

class FakeProvider : public SettingsProvider {
  public:
    FakeProvider(std::string name, FakeSettings& settings)
        : name_(std::move(name)), settings_(settings), atStart_(settings.value) {}
    std::string_view name() const override { return name_; }
    bool reachesRunningPrograms() const override { return settings_.reachesRunning; }
    bool knowsPresentValue() const override { return settings_.knowsPresent; }
    Result<PointerSetting> read() override {
        if (!settings_.readable) return Error{"fake", 1, "away"};
        return settings_.knowsPresent ? settings_.value : atStart_;
    }
    Status write(const PointerSetting& setting) override {
        if (!settings_.writable) return Error{"fake", 2, "locked"};
        step();
        settings_.value.size = setting.size;
        step();
        settings_.value.theme = setting.theme;
        settings_.writes.push_back(setting);
        step();
        return Done{};
    }

  private:
    void step() const {
        if (settings_.stepsLeft && *settings_.stepsLeft >= 0 && (*settings_.stepsLeft)-- == 0) throw Killed();
    }

    const std::string name_;
    FakeSettings& settings_;
    const PointerSetting atStart_;
};

}  // namespace pintle::wayland
