#include "platform/freedesktop/autostart_entry.h"

#include <cstdint>
#include <span>
#include <system_error>
#include <utility>

#include "base/own_file.h"
#include "platform/freedesktop/desktop_entry.h"
#include "platform/posix/shared_file.h"

namespace pintle {
namespace {

constexpr std::size_t kLargestEntry = std::size_t{64} << 10;

class AbsentLoginItemService : public LoginItemService {
  public:
    Status registerItem() override { return absent(); }
    Status unregisterItem() override { return absent(); }
    LoginItemStatus status() override { return LoginItemStatus::notFound; }

  private:
    static Error absent() { return {"Pintle", 0, "Login item service not available"}; }
};

class AutostartEntry : public LoginAgent {
  public:
    explicit AutostartEntry(std::filesystem::path path) : path_(std::move(path)) {}

    std::filesystem::path path() const override { return path_; }
    bool exists() const override {
        std::error_code error;
        return std::filesystem::exists(path_, error) && value("Hidden") != "true";
    }
    std::optional<std::string> program() const override {
        if (!exists()) return std::nullopt;
        const auto command = value("Exec");
        return command ? execProgram(*command) : std::nullopt;
    }
    Status write(const std::string& executable) override {
        // The file's name is the label. Being there means "run at login"; nothing restarts what it started.
        const std::string text =
            "[Desktop Entry]\n"
            "Type=Application\n"
            "Version=1.0\n"
            "Name=Pintle\n"
            "Comment=Puts your cursor theme in force\n"
            "Exec=" +
            execValue(executable) +
            "\n"
            "Icon=com.pintle.app\n"
            "Terminal=false\n"
            "X-GNOME-Autostart-enabled=true\n";
        // Replaced as a whole, so that a session that starts meanwhile sees the old entry or the new one.
        const auto replaced =
            replaceFile(path_, std::span(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
        if (!replaced) return replaced.error();
        return Done{};
    }
    Status remove() override {
        std::error_code error;
        std::filesystem::remove(path_, error);
        if (error) return Error{"Pintle", error.value(), error.message()};
        return Done{};
    }

  private:
    std::optional<std::string> value(std::string_view key) const {
        const auto file = readOwnFile(path_, kLargestEntry);
        if (!file) return std::nullopt;
        const auto& bytes = file.value().bytes;
        return desktopEntryValue({reinterpret_cast<const char*>(bytes.data()), bytes.size()}, key);
    }

    std::filesystem::path path_;
};

}  // namespace

std::unique_ptr<LoginItemService> makeAbsentLoginItemService() {
    return std::make_unique<AbsentLoginItemService>();
}

std::unique_ptr<LoginAgent> makeAutostartEntry(const std::filesystem::path& configuration) {
    return std::make_unique<AutostartEntry>(configuration / "autostart" / "com.pintle.app.desktop");
}

}  // namespace pintle
