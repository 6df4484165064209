#include "settings/launch_agent_file.h"

#include <fmt/format.h>

#include <cerrno>
#include <fstream>
#include <iterator>
#include <system_error>
#include <utility>
#include <vector>

namespace pintle {
namespace {

constexpr auto kLabel = "com.pintle.app";

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
        std::ifstream file(path_, std::ios::binary);
        const std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(file), {}};
        const auto list = coder_.decode(bytes);
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
        errno = 0;
        std::ofstream file(path_, std::ios::binary | std::ios::trunc);
        file.write(reinterpret_cast<const char*>(bytes->data()), static_cast<std::streamsize>(bytes->size()));
        file.close();
        if (file) return Done{};
        const std::error_code cause(errno ? errno : EIO, std::generic_category());
        return Error{"Pintle", cause.value(), cause.message()};
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
