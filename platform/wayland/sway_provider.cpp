#include "platform/wayland/sway_provider.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <utility>

#include "platform/wayland/local_socket.h"
#include "platform/wayland/sway_messages.h"

namespace pintle::wayland {
namespace {

using Json = nlohmann::json;

using namespace sway;

constexpr std::chrono::milliseconds kPatience{2000};
/// From this version on a pointer takes its theme while it is in use.
constexpr int kMajorOfLiveThemes = 1;
constexpr int kMinorOfLiveThemes = 9;
/// What sway takes when nothing is set.
constexpr std::string_view kUnsetTheme = "default";
constexpr std::string_view kUnsetSize = "24";

Error refused(const std::string& why) { return {"sway", EPROTO, why}; }

Result<Json> ask(const std::filesystem::path& path, Request request, std::string_view payload = {}) {
    auto connected = LocalSocket::connect(path, kPatience);
    if (!connected) return connected.error();
    auto socket = std::move(connected).value();
    if (auto sent = socket.send(message(request, payload)); !sent) return sent.error();
    const auto bytes = socket.receive(kHeaderBytes);
    if (!bytes) return bytes.error();
    const auto header = headerOf(bytes.value());
    if (!header) return refused("not sway's answer");
    if (header->length > kLargestAnswer) return refused("too long an answer");
    const auto body = socket.receive(header->length);
    if (!body) return body.error();
    auto answer = Json::parse(body.value(), nullptr, /*allow_exceptions=*/false);
    if (answer.is_discarded()) return refused("not sway's answer");
    return answer;
}

/// The names of outputs and seats and of themes go into a command line: quotes and separators would end it.
bool isPlain(std::string_view text) {
    return !text.empty() && text.size() <= 255 && std::all_of(text.begin(), text.end(), [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) || std::strchr("-_.:+ ", c) != nullptr ||
               static_cast<unsigned char>(c) >= 0x80;
    });
}

Status run(const std::filesystem::path& path, const std::string& command) {
    const auto answer = ask(path, Request::runCommand, command);
    if (!answer) return answer.error();
    if (!answer.value().is_array()) return refused("not sway's answer");
    for (const auto& each : answer.value())
        if (!each.is_object() || !each.contains("success") || each["success"] != true)
            return refused(textIn(each, "error"));
    return Done{};
}

struct Output {
    std::string name;
    double scale = 1;
    bool isAwake = true;
};

std::vector<Output> outputsOf(const std::filesystem::path& path) {
    std::vector<Output> outputs;
    const auto answer = ask(path, Request::outputs);
    if (!answer || !answer.value().is_array()) return outputs;
    for (const auto& each : answer.value()) {
        const auto name = textIn(each, "name");
        if (name.empty()) continue;
        const auto active = each.find("active");
        const auto scale = each.find("scale");
        if (active == each.end() || *active != true || scale == each.end() || !scale->is_number()) continue;
        const auto awake = each.find("dpms");
        outputs.push_back({name, scale->get<double>(), awake == each.end() || *awake != false});
    }
    return outputs;
}

class SwayProvider : public SettingsProvider {
  public:
    SwayProvider(std::filesystem::path path, PointerSetting atStart)
        : path_(std::move(path)), atStart_(std::move(atStart)) {}

    std::string_view name() const override { return "sway"; }
    bool reachesRunningPrograms() const override { return true; }
    bool knowsPresentValue() const override { return false; }
    Result<PointerSetting> read() override { return atStart_; }

    Status write(const PointerSetting& setting) override {
        const auto theme = setting.theme.value_or(std::string(kUnsetTheme));
        const auto size = setting.size.value_or(std::string(kUnsetSize));
        int number = 0;
        const auto parsed = std::from_chars(size.data(), size.data() + size.size(), number);
        if (!isPlain(theme) || parsed.ec != std::errc() || parsed.ptr != size.data() + size.size())
            return refused("a value that no command can hold");
        const auto seats = ask(path_, Request::seats);
        if (!seats) return seats.error();
        if (!seats.value().is_array()) return refused("not sway's answer");
        std::string command;
        for (const auto& each : seats.value()) {
            const auto seat = textIn(each, "name");
            if (!isPlain(seat)) continue;
            command.append("seat \"").append(seat).append("\" xcursor_theme \"").append(theme);
            command.append("\" ").append(std::to_string(number)).append("; ");
        }
        if (command.empty()) return refused("there is no seat");
        if (auto ran = run(path_, command); !ran) return ran;
        return takesThemesLive() ? Status(Done{}) : nudge();
    }

  private:
    bool takesThemesLive() const {
        const auto answer = ask(path_, Request::version);
        if (!answer || !answer.value().is_object()) return true;
        const auto number = [&](const char* key) {
            const auto found = answer.value().find(key);
            return found != answer.value().end() && found->is_number_integer() ? found->get<std::int64_t>()
                                                                               : 0;
        };
        return std::pair(number("major"), number("minor")) >=
               std::pair<std::int64_t, std::int64_t>(kMajorOfLiveThemes, kMinorOfLiveThemes);
    }

    /// Earlier versions look at the theme again when an output is configured. Those that are awake are
    /// enabled again: a repeated scale could undo a change of it that the user makes meanwhile. The others
    /// are configured when they wake.
    Status nudge() const {
        for (const auto& output : outputsOf(path_)) {
            if (!isPlain(output.name) || !output.isAwake) continue;
            auto ran = run(path_, "output \"" + output.name + "\" enable");
            if (!ran) return ran;
        }
        return Done{};
    }

    const std::filesystem::path path_;
    const PointerSetting atStart_;
};

}  // namespace

std::unique_ptr<SettingsProvider> makeSwayProvider(const Environment& environment) {
    const auto path = socketOf(environment);
    if (path.empty()) return nullptr;
    const auto value = [&](const char* name) {
        auto text = environment(name);
        if (text && text->empty()) text.reset();
        return text;
    };
    return std::make_unique<SwayProvider>(path,
                                          PointerSetting{value("XCURSOR_THEME"), value("XCURSOR_SIZE")});
}

std::vector<double> swayOutputScales(const Environment& environment) {
    std::vector<double> scales;
    const auto path = socketOf(environment);
    if (path.empty()) return scales;
    for (const auto& output : outputsOf(path)) scales.push_back(output.scale);
    return scales;
}

}  // namespace pintle::wayland
