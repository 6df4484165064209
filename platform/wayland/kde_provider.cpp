#include "platform/wayland/kde_provider.h"

#include <gio/gio.h>

#include <cerrno>
#include <string_view>
#include <system_error>
#include <utility>

#include "base/own_file.h"
#include "platform/wayland/key_file.h"

namespace pintle::wayland {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLargestFile = std::size_t{1} << 20;
constexpr std::string_view kGroup = "Mouse";
constexpr std::string_view kThemeKey = "cursorTheme";
constexpr std::string_view kSizeKey = "cursorSize";
/// What org.kde.KGlobalSettings calls a change of the pointer's theme.
constexpr gint32 kCursorChanged = 5;

struct Unref {
    void operator()(gpointer object) const { g_object_unref(object); }
};

Status emitChange(const std::string& address) {
    GError* error = nullptr;
    const auto failure = [&] {
        Error result{"dbus", error ? error->code : 0, error ? error->message : "no bus"};
        g_clear_error(&error);
        return result;
    };
    // A connection of its own: the shared one would end the process with the bus.
    const std::unique_ptr<GDBusConnection, Unref> bus(g_dbus_connection_new_for_address_sync(
        address.c_str(),
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, &error));
    if (!bus) return failure();
    if (!g_dbus_connection_emit_signal(bus.get(), nullptr, "/KGlobalSettings", "org.kde.KGlobalSettings",
                                       "notifyChange", g_variant_new("(ii)", kCursorChanged, 0), &error) ||
        // Closing does not wait for what was not sent yet.
        !g_dbus_connection_flush_sync(bus.get(), nullptr, &error) ||
        !g_dbus_connection_close_sync(bus.get(), nullptr, &error))
        return failure();
    return Done{};
}

class KdeProvider : public SettingsProvider {
  public:
    explicit KdeProvider(KdeOptions options) : options_(std::move(options)) {}

    std::string_view name() const override { return "kde"; }
    bool reachesRunningPrograms() const override { return true; }
    bool knowsPresentValue() const override { return true; }

    Result<PointerSetting> read() override {
        const auto text = readText();
        if (!text) return text.error();
        return PointerSetting{keyFileValue(text.value(), kGroup, kThemeKey),
                              keyFileValue(text.value(), kGroup, kSizeKey)};
    }

    Status write(const PointerSetting& setting) override {
        for (const auto& value : {setting.theme, setting.size})
            if (value && value->find_first_of("\n\r") != std::string::npos)
                return Error{"kde", EINVAL, "a value of several lines"};
        const auto before = readText();
        if (!before) return before.error();
        auto text = withKeyFileValue(before.value(), kGroup, kSizeKey, setting.size);
        text = withKeyFileValue(text, kGroup, kThemeKey, setting.theme);
        if (text != before.value()) {
            std::error_code error;
            fs::create_directories(options_.file.parent_path(), error);
            // People keep such files elsewhere and link to them.
            auto file = fs::canonical(options_.file, error);
            if (error) file = options_.file;
            auto replaced = replaceOwnFile(
                file, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}, mode_);
            if (!replaced) return replaced;
        }
        return emitChange(options_.busAddress);
    }

  private:
    /// Empty when there is no file.
    Result<std::string> readText() {
        auto read = readOwnFile(options_.file, kLargestFile);
        if (!read) {
            if (read.error().code == ENOENT) return std::string();
            return read.error();
        }
        mode_ = read.value().status.st_mode & 0777;
        const auto& bytes = read.value().bytes;
        return std::string(bytes.begin(), bytes.end());
    }

    const KdeOptions options_;
    mode_t mode_ = 0600;
};

}  // namespace

std::unique_ptr<SettingsProvider> makeKdeProvider(const Environment& environment) {
    const auto absolute = [&](const char* name) {
        const auto value = environment(name).value_or("");
        return value.starts_with('/') ? fs::path(value) : fs::path();
    };
    // A list of names with colons between them.
    const auto desktops = ":" + environment("XDG_CURRENT_DESKTOP").value_or("") + ":";
    if (desktops.find(":KDE:") == std::string::npos) return nullptr;
    auto folder = absolute("XDG_CONFIG_HOME");
    if (folder.empty() && !absolute("HOME").empty()) folder = absolute("HOME") / ".config";
    auto address = environment("DBUS_SESSION_BUS_ADDRESS").value_or("");
    if (address.empty() && !absolute("XDG_RUNTIME_DIR").empty())
        address = "unix:path=" + (absolute("XDG_RUNTIME_DIR") / "bus").string();
    if (folder.empty() || address.empty()) return nullptr;
    return makeKdeProvider(KdeOptions{folder / "kcminputrc", address});
}

std::unique_ptr<SettingsProvider> makeKdeProvider(KdeOptions options) {
    return std::make_unique<KdeProvider>(std::move(options));
}

}  // namespace pintle::wayland
