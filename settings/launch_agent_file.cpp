#include "settings/launch_agent_file.h"

#include <cstddef>
#include <system_error>
#include <utility>

#include "base/own_file.h"

namespace pintle {
namespace {

constexpr auto kLabel = "com.pintle.app";
constexpr std::size_t kLargestFile = std::size_t{64} << 10;

class LaunchAgentFile : public LoginAgent {
  public:
    LaunchAgentFile(std::filesystem::path path, PropertyListCoder& coder)
        : path_(std::move(path)), coder_(coder) {}

    std::filesystem::path path() const override { return path_; }
    bool exists() const override {
        std::error_code error;
        return std::filesystem::exists(path_, error);
    }
    std::optional<std::string> program() const override {
        const auto file = readOwnFile(path_, kLargestFile);
        if (!file) return std::nullopt;
        const auto list = coder_.decode(file.value().bytes);
        const auto* entries = list ? list->as<PropertyDictionary>() : nullptr;
        if (!entries || !entries->contains("ProgramArguments")) return std::nullopt;
        const auto* arguments = entries->at("ProgramArguments").as<PropertyArray>();
        if (!arguments || arguments->empty()) return std::nullopt;
        const auto* program = arguments->front().as<std::string>();
        return program ? std::optional(*program) : std::nullopt;
    }
    Status write(const std::string& executable) override {
        std::error_code ignored;
        std::filesystem::create_directories(path_.parent_path(), ignored);
        const auto bytes = coder_.encode(PropertyDictionary{{"Label", kLabel},
                                                            {"ProgramArguments", PropertyArray{executable}},
                                                            {"RunAtLoad", true},
                                                            {"KeepAlive", false}},
                                         PropertyListFormat::xml);
        if (!bytes) return Error{"Pintle", 0, "The property list could not be made."};
        const auto replaced = replaceOwnFile(path_, *bytes);
        if (!replaced) return Error{"Pintle", replaced.error().code, replaced.error().description};
        return Done{};
    }
    Status remove() override {
        std::error_code error;
        std::filesystem::remove(path_, error);
        if (error) return Error{"Pintle", error.value(), error.message()};
        return Done{};
    }

  private:
    std::filesystem::path path_;
    PropertyListCoder& coder_;
};

}  // namespace

std::unique_ptr<LoginAgent> makeLaunchAgentFile(const std::filesystem::path& home, PropertyListCoder& coder) {
    return std::make_unique<LaunchAgentFile>(home / "Library" / "LaunchAgents" / "com.pintle.app.plist",
                                             coder);
}

}  // namespace pintle
