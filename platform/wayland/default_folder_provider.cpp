#include "platform/wayland/default_folder_provider.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>
#include <system_error>
#include <utility>

#include "base/own_file.h"
#include "platform/wayland/theme_folder.h"

namespace pintle::wayland {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLargestFile = std::size_t{16} << 10;
constexpr std::string_view kIndexName = "index.theme";
constexpr std::string_view kStart =
    "# Written by Pintle, which puts back what was here before.\n[Icon Theme]\nName=Default\nInherits=";

/// Nothing, or a folder itself with nothing but an ordinary index file.
bool canBeOurs(const fs::path& folder) {
    struct stat facts {};
    if (::lstat(folder.c_str(), &facts) != 0) return errno == ENOENT;
    if (!S_ISDIR(facts.st_mode)) return false;
    std::error_code error;
    for (fs::directory_iterator each(folder, error), end; !error && each != end; each.increment(error))
        if (each->path().filename() != kIndexName || !fs::is_regular_file(each->symlink_status(error)))
            return false;
    return !error;
}

class DefaultFolderProvider : public SettingsProvider {
  public:
    DefaultFolderProvider(std::string name, fs::path folder)
        : name_(std::move(name)), folder_(std::move(folder)), index_(folder_ / kIndexName) {}

    std::string_view name() const override { return name_; }
    bool reachesRunningPrograms() const override { return false; }
    bool knowsPresentValue() const override { return true; }

    Result<PointerSetting> read() override {
        auto read = readOwnFile(index_, kLargestFile);
        if (!read) {
            if (read.error().code == ENOENT) return PointerSetting();
            return read.error();
        }
        const auto& bytes = read.value().bytes;
        return PointerSetting{std::string(bytes.begin(), bytes.end()), std::nullopt};
    }

    Status write(const PointerSetting& setting) override {
        if (!canBeOurs(folder_)) return errorOf(EEXIST);
        if (!setting.theme) {
            if (::unlink(index_.c_str()) != 0 && errno != ENOENT) return errorOf(errno);
            // Only when it is empty.
            ::rmdir(folder_.c_str());
            return Done{};
        }
        std::error_code error;
        fs::create_directories(folder_, error);
        if (error) return errorOf(error.value());
        const auto& text = *setting.theme;
        return replaceOwnFile(index_, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
    }

    PointerSetting valueFor(const ThemeChoice& choice, const PointerSetting&) const override {
        return {std::string(kStart) + choice.theme + "\n", std::nullopt};
    }
    bool isOwn(const std::string& theme) const override { return theme.starts_with(kStart); }

  private:
    static Error errorOf(int code) { return {"errno", code, std::generic_category().message(code)}; }

    const std::string name_;
    const fs::path folder_;
    const fs::path index_;
};

}  // namespace

std::unique_ptr<SettingsProvider> makeDefaultFolderProvider(std::string name, const fs::path& icons) {
    auto folder = icons / "default";
    if (!canBeOurs(folder)) return nullptr;
    return std::make_unique<DefaultFolderProvider>(std::move(name), std::move(folder));
}

}  // namespace pintle::wayland
