#include "platform/wayland/setting_state.h"

#include <unistd.h>

#include <cerrno>
#include <nlohmann/json.hpp>
#include <system_error>
#include <utility>

#include "base/own_file.h"

namespace pintle::wayland {
namespace {

using Json = nlohmann::json;

constexpr int kVersion = 1;
constexpr std::size_t kLargestFile = std::size_t{256} << 10;
constexpr std::size_t kLongestValue = std::size_t{16} << 10;
constexpr std::size_t kMostProviders = 32;

Json encoded(const std::optional<std::string>& value) { return value ? Json(*value) : Json(nullptr); }

Json encoded(const PointerSetting& setting) {
    return {{"theme", encoded(setting.theme)}, {"size", encoded(setting.size)}};
}

bool fits(const std::optional<std::string>& value) { return !value || value->size() <= kLongestValue; }
bool fits(const PointerSetting& setting) { return fits(setting.theme) && fits(setting.size); }

/// False: neither a text of a bearable length nor null.
bool decodeValue(const Json& object, const char* key, std::optional<std::string>& value) {
    const auto found = object.find(key);
    if (found == object.end()) return false;
    if (found->is_null()) {
        value.reset();
        return true;
    }
    if (!found->is_string()) return false;
    value = found->get<std::string>();
    return fits(value);
}

bool decodeSetting(const Json& object, const char* key, PointerSetting& setting) {
    const auto found = object.find(key);
    return found != object.end() && found->is_object() && decodeValue(*found, "theme", setting.theme) &&
           decodeValue(*found, "size", setting.size);
}

std::optional<SettingState> readState(const std::filesystem::path& file, bool& isThere) {
    const auto read = readOwnFile(file, kLargestFile);
    isThere = static_cast<bool>(read) || read.error().code != ENOENT;
    if (!read) return std::nullopt;
    const auto& bytes = read.value().bytes;
    return decodeSettingState({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

}  // namespace

std::optional<std::string> encodeSettingState(const SettingState& state) {
    if (state.size() > kMostProviders) return std::nullopt;
    Json providers = Json::object();
    for (const auto& [name, entry] : state) {
        if (!fits(entry.previous) || !fits(entry.written) || !fits(entry.sizeBefore)) return std::nullopt;
        providers[name] = {{"previous", encoded(entry.previous)},
                           {"written", encoded(entry.written)},
                           {"sizeBefore", encoded(entry.sizeBefore)}};
    }
    const Json document = {{"version", kVersion}, {"providers", providers}};
    auto text = document.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
    if (text.size() > kLargestFile) return std::nullopt;
    // What is no text was replaced above and does not come back as it was.
    if (decodeSettingState(text) != state) return std::nullopt;
    return text;
}

std::optional<SettingState> decodeSettingState(std::string_view text) {
    const auto document = Json::parse(text.begin(), text.end(), nullptr, /*allow_exceptions=*/false);
    if (!document.is_object()) return std::nullopt;
    const auto version = document.find("version");
    const auto providers = document.find("providers");
    if (version == document.end() || *version != kVersion || providers == document.end() ||
        !providers->is_object() || providers->size() > kMostProviders)
        return std::nullopt;
    SettingState state;
    for (const auto& [name, object] : providers->items()) {
        ProviderState entry;
        if (!object.is_object() || !decodeSetting(object, "previous", entry.previous) ||
            !decodeSetting(object, "written", entry.written) ||
            !decodeValue(object, "sizeBefore", entry.sizeBefore))
            return std::nullopt;
        state.emplace(name, std::move(entry));
    }
    return state;
}

StateFile::StateFile(std::filesystem::path file) : file_(std::move(file)), copy_(file_) { copy_ += ".copy"; }

StateFile::Loaded StateFile::load() const {
    bool isThere = false;
    bool copyIsThere = false;
    if (auto state = readState(file_, isThere)) return {std::move(*state), false};
    auto copy = readState(copy_, copyIsThere);
    return {copy ? std::move(*copy) : SettingState(), isThere || copyIsThere};
}

Status StateFile::save(const SettingState& state) const {
    const auto text = encodeSettingState(state);
    if (!text) return Error{"errno", EILSEQ, std::generic_category().message(EILSEQ)};
    std::error_code error;
    std::filesystem::create_directories(file_.parent_path(), error);
    if (error) return Error{"errno", error.value(), error.message()};
    const std::span bytes(reinterpret_cast<const std::uint8_t*>(text->data()), text->size());
    if (auto saved = replaceOwnFile(file_, bytes, 0600); !saved) return saved;
    return replaceOwnFile(copy_, bytes, 0600);
}

void StateFile::remove() const {
    // The copy first: without the file it would count.
    ::unlink(copy_.c_str());
    ::unlink(file_.c_str());
}

}  // namespace pintle::wayland
