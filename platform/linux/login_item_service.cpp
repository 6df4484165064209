#include "platform/linux/login_item_service.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <system_error>
#include <utility>

#include "platform/linux/desktop_entry.h"

namespace pintle {
namespace {

class AbsentLoginItemService : public LoginItemService {
  public:
    Status registerItem() override { return absent(); }
    Status unregisterItem() override { return absent(); }
    LoginItemStatus status() override { return LoginItemStatus::notFound; }

  private:
    static Error absent() { return {"Pintle", 0, "Login item service not available"}; }
};

Error lastError() {
    const std::error_code cause(errno ? errno : EIO, std::generic_category());
    return {"Pintle", cause.value(), cause.message()};
}

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
        std::error_code ignored;
        std::filesystem::create_directories(path_.parent_path(), ignored);
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
            "Terminal=false\n"
            "X-GNOME-Autostart-enabled=true\n";
        return replaceFile(text);
    }
    Status remove() override {
        std::error_code error;
        std::filesystem::remove(path_, error);
        if (error) return Error{"Pintle", error.value(), error.message()};
        return Done{};
    }

  private:
    std::optional<std::string> value(std::string_view key) const {
        std::ifstream file(path_, std::ios::binary);
        const std::string text{std::istreambuf_iterator<char>(file), {}};
        return desktopEntryValue(text, key);
    }
    // A session that starts in the middle sees the old entry or the new one.
    Status replaceFile(const std::string& text) {
        const std::string fresh = path_.string() + ".new";
        const int file = ::open(fresh.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
        if (file < 0) return lastError();
        std::size_t written = 0;
        while (written < text.size()) {
            const auto step = ::write(file, text.data() + written, text.size() - written);
            if (step < 0 && errno == EINTR) continue;
            if (step <= 0) {
                const auto error = lastError();
                ::close(file);
                ::unlink(fresh.c_str());
                return error;
            }
            written += static_cast<std::size_t>(step);
        }
        if (::close(file) != 0 || std::rename(fresh.c_str(), path_.c_str()) != 0) {
            const auto error = lastError();
            ::unlink(fresh.c_str());
            return error;
        }
        return Done{};
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

std::filesystem::path programToStart(const std::filesystem::path& executable) {
    const char* image = std::getenv("APPIMAGE");
    return image && *image == '/' ? std::filesystem::path(image) : executable;
}

}  // namespace pintle
