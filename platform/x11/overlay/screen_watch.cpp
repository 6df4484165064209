#include "platform/x11/overlay/screen_watch.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <optional>
#include <string_view>
#include <system_error>

#include "base/lifetime.h"

namespace pintle::overlay {
namespace {

constexpr std::chrono::seconds kAnswerAge{5};

/// The kernel keeps the first 15 characters of a name.
constexpr std::size_t kLongestName = 15;
constexpr std::array<std::string_view, 6> kWatchers = {
    "x11vnc", "x0vncserver", "x0tigervncserver", "recordmydesktop", "gpu-screen-recorder", "byzanz-record"};
/// Records whatever its arguments name: the screen when one of them is a screen source.
constexpr std::string_view kConverter = "ffmpeg";
constexpr std::array<std::string_view, 2> kScreenSources = {"x11grab", "kmsgrab"};

std::string contentsOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

bool isProcess(const std::string& name) {
    return !name.empty() &&
           std::all_of(name.begin(), name.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool someProcessWatches(const std::filesystem::path& processes) {
    std::error_code error;
    std::filesystem::directory_iterator each(processes, error);
    for (; !error && each != std::filesystem::directory_iterator(); each.increment(error)) {
        if (!isProcess(each->path().filename().string())) continue;
        std::string name = contentsOf(each->path() / "comm");
        if (!name.empty() && name.back() == '\n') name.pop_back();
        const std::string command = name == kConverter ? contentsOf(each->path() / "cmdline") : std::string();
        if (watchesTheScreen(name, command)) return true;
    }
    return false;
}

class ScreenWatch {
  public:
    ScreenWatch(MainQueue& queue, BackgroundTasks& background, std::filesystem::path processes)
        : queue_(queue), background_(background), processes_(std::move(processes)) {}

    bool ask() {
        const auto now = queue_.now();
        if (!askedAt_ || now - *askedAt_ > kAnswerAge) {
            askedAt_ = now;
            runInBackground(
                background_, queue_, lifetime_, Priority::utility,
                [processes = processes_] { return someProcessWatches(processes); },
                [this](bool watched) { watched_ = watched; });
        }
        return watched_;
    }

  private:
    MainQueue& queue_;
    BackgroundTasks& background_;
    std::filesystem::path processes_;
    std::optional<std::chrono::nanoseconds> askedAt_;
    bool watched_ = false;
    Lifetime lifetime_;
};

}  // namespace

bool watchesTheScreen(const std::string& name, const std::string& commandLine) {
    for (const std::string_view watcher : kWatchers)
        if (name == watcher.substr(0, kLongestName)) return true;
    if (name != kConverter) return false;
    for (std::size_t begin = 0; begin < commandLine.size();) {
        const std::size_t end = std::min(commandLine.find('\0', begin), commandLine.size());
        const std::string_view word(commandLine.data() + begin, end - begin);
        if (std::find(kScreenSources.begin(), kScreenSources.end(), word) != kScreenSources.end())
            return true;
        begin = end + 1;
    }
    return false;
}

std::function<bool()> makeScreenWatch(MainQueue& queue, BackgroundTasks& background,
                                      std::filesystem::path processes) {
    return [watch = std::make_shared<ScreenWatch>(queue, background, std::move(processes))] {
        return watch->ask();
    };
}

}  // namespace pintle::overlay
