#include "platform/wayland/settings_channel.h"

#include <utility>

#include "platform/wayland/theme_folder.h"

namespace pintle::wayland {
namespace {

bool isOurSize(const std::optional<std::string>& size, const ProviderState& noted) {
    return size && (size == noted.written.size || size == noted.sizeBefore);
}

}  // namespace

SettingsChannel::SettingsChannel(std::vector<std::unique_ptr<SettingsProvider>> providers, StateFile file,
                                 Log& log)
    : providers_(std::move(providers)), file_(std::move(file)), log_(log) {}

bool SettingsChannel::reachesAnybody() const {
    for (const auto& provider : providers_)
        if (provider->reachesRunningPrograms()) return true;
    return false;
}

void SettingsChannel::complain(const SettingsProvider& provider, std::string_view what, const Error& error) {
    log_.system("[Wayland] " + std::string(provider.name()) + ": " + std::string(what) + ": " +
                error.description);
}

SettingState SettingsChannel::loadState() {
    auto loaded = file_.load();
    if (loaded.wasDamaged)
        log_.system(
            loaded.state.empty()
                ? "[Wayland] The file with the desktop's own pointer setting is damaged"
                : "[Wayland] The file with the desktop's own pointer setting is damaged - its copy is used");
    return std::move(loaded.state);
}

std::vector<SettingsChannel::Present> SettingsChannel::readAll() {
    std::vector<Present> all;
    for (const auto& provider : providers_) {
        auto value = provider->read();
        if (value)
            all.push_back({provider.get(), std::move(value).value()});
        else
            complain(*provider, "cannot be read", value.error());
    }
    return all;
}

PointerSetting SettingsChannel::ownValue(const SettingsProvider& provider, const PointerSetting& present,
                                         const ProviderState* noted) {
    PointerSetting own = present;
    if (noted && !provider.knowsPresentValue()) own = noted->previous;
    if (own.theme && isOwnThemeName(*own.theme)) {
        own.theme = noted ? noted->previous.theme : std::nullopt;
        // Nobody knows what stood there before ours.
        if (!noted) own.size = std::nullopt;
    }
    if (noted && isOurSize(own.size, *noted)) own.size = noted->previous.size;
    // A damaged or foreign file must not make ours the user's.
    if (own.theme && isOwnThemeName(*own.theme)) own.theme = std::nullopt;
    return own;
}

bool SettingsChannel::put(const ThemeChoice& choice) {
    const auto present = readAll();
    // Entries of providers that are away stay noted.
    auto state = loadState();
    for (const auto& each : present) {
        const auto noted = state.find(each.provider->name());
        const bool isNoted = noted != state.end();
        ProviderState entry;
        entry.previous = ownValue(*each.provider, each.value, isNoted ? &noted->second : nullptr);
        if (isNoted && isOurSize(each.value.size, noted->second)) entry.sizeBefore = each.value.size;
        entry.written = {choice.theme, std::to_string(choice.size)};
        state.insert_or_assign(std::string(each.provider->name()), std::move(entry));
    }
    if (const auto saved = file_.save(state); !saved) {
        log_.system("[Wayland] The desktop's own pointer setting cannot be noted, so it stays as it is: " +
                    saved.error().description);
        return false;
    }
    bool taken = false;
    for (const auto& each : present) {
        const auto written = each.provider->write(state.find(each.provider->name())->second.written);
        if (!written)
            complain(*each.provider, "cannot be written", written.error());
        else if (each.provider->reachesRunningPrograms())
            taken = true;
    }
    return taken;
}

bool SettingsChannel::restore() {
    auto state = loadState();
    bool clean = true;
    for (const auto& provider : providers_) {
        const auto found = state.find(provider->name());
        const auto* const noted = found == state.end() ? nullptr : &found->second;
        const auto present = provider->read();
        if (!present) {
            complain(*provider, "cannot be read", present.error());
            clean = clean && !noted;
            continue;
        }
        const auto own = ownValue(*provider, present.value(), noted);
        const bool changes = own != present.value() || (noted && !provider->knowsPresentValue());
        if (changes) {
            if (const auto written = provider->write(own); !written) {
                complain(*provider, "cannot be put back", written.error());
                clean = false;
                continue;
            }
        }
        if (noted) state.erase(found);
    }
    if (state.empty()) {
        file_.remove();
        return clean;
    }
    // What belongs to a provider that is not here now waits for the session in which it is.
    if (const auto saved = file_.save(state); !saved)
        log_.system("[Wayland] The note of the desktop's own pointer setting cannot be renewed: " +
                    saved.error().description);
    return false;
}

std::optional<std::string> SettingsChannel::themeInForce() {
    const auto present = readAll();
    const auto ofThese = [&](bool known) -> std::optional<std::string> {
        for (const auto& each : present)
            if (each.provider->knowsPresentValue() == known && each.value.theme &&
                isOwnThemeName(*each.value.theme))
                return each.value.theme;
        return std::nullopt;
    };
    if (auto theme = ofThese(true)) return theme;
    for (const auto& [name, entry] : loadState())
        if (entry.written.theme && isOwnThemeName(*entry.written.theme)) return entry.written.theme;
    return ofThese(false);
}

PointerSetting SettingsChannel::usersOwn() {
    const auto state = loadState();
    PointerSetting found;
    for (const auto& each : readAll()) {
        if (!each.provider->reachesRunningPrograms()) continue;
        const auto noted = state.find(each.provider->name());
        const auto own =
            ownValue(*each.provider, each.value, noted == state.end() ? nullptr : &noted->second);
        if (!found.theme) found.theme = own.theme;
        if (!found.size) found.size = own.size;
    }
    return found;
}

}  // namespace pintle::wayland
