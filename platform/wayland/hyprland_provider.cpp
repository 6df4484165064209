#include "platform/wayland/hyprland_provider.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

#include "platform/wayland/local_socket.h"

namespace pintle::wayland {
namespace {

constexpr std::chrono::milliseconds kPatience{2000};
constexpr std::size_t kLargestAnswer = 4096;
constexpr std::string_view kUnsetTheme = "default";
constexpr std::string_view kUnsetSize = "24";

/// One word of a command.
bool isWord(std::string_view text) {
    return !text.empty() && text.size() <= 255 && std::all_of(text.begin(), text.end(), [](char c) {
        return static_cast<unsigned char>(c) > 0x20 && c != 0x7F && c != ';';
    });
}

class HyprlandProvider : public SettingsProvider {
  public:
    HyprlandProvider(std::filesystem::path path, PointerSetting atStart)
        : path_(std::move(path)), atStart_(std::move(atStart)) {}

    std::string_view name() const override { return "hyprland"; }
    bool reachesRunningPrograms() const override { return true; }
    bool knowsPresentValue() const override { return false; }
    Result<PointerSetting> read() override { return atStart_; }

    Status write(const PointerSetting& setting) override {
        const auto theme = setting.theme.value_or(std::string(kUnsetTheme));
        const auto size = setting.size.value_or(std::string(kUnsetSize));
        if (!isWord(theme) || !isWord(size))
            return Error{"hyprland", EINVAL, "a value that no command can hold"};
        auto connected = LocalSocket::connect(path_, kPatience);
        if (!connected) return connected.error();
        auto socket = std::move(connected).value();
        if (auto sent = socket.send("setcursor " + theme + " " + size); !sent) return sent;
        const auto answer = socket.receiveAll(kLargestAnswer);
        if (!answer) return answer.error();
        if (answer.value() != "ok") return Error{"hyprland", EPROTO, "the command was refused"};
        return Done{};
    }

  private:
    const std::filesystem::path path_;
    const PointerSetting atStart_;
};

}  // namespace

std::unique_ptr<SettingsProvider> makeHyprlandProvider(const Environment& environment) {
    const auto value = [&](const char* name) {
        auto text = environment(name);
        if (text && text->empty()) text.reset();
        return text;
    };
    const auto instance = value("HYPRLAND_INSTANCE_SIGNATURE");
    const auto runtime = value("XDG_RUNTIME_DIR");
    if (!instance || instance->find('/') != std::string::npos || !runtime || !runtime->starts_with('/'))
        return nullptr;
    return std::make_unique<HyprlandProvider>(
        std::filesystem::path(*runtime) / "hypr" / *instance / ".socket.sock",
        PointerSetting{value("XCURSOR_THEME"), value("XCURSOR_SIZE")});
}

}  // namespace pintle::wayland
