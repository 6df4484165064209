#include "platform/wayland/gsettings_provider.h"

// The library shows backends only to those who ask for them.
#define G_SETTINGS_ENABLE_BACKEND
#include <gio/gio.h>
#include <gio/gsettingsbackend.h>

#include <charconv>
#include <string_view>
#include <utility>

namespace pintle::wayland {
namespace {

constexpr const char* kThemeKey = "cursor-theme";
constexpr const char* kSizeKey = "cursor-size";
constexpr gsize kLongestValue = 4096;

struct Unref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
struct UnrefSchema {
    void operator()(GSettingsSchema* schema) const { g_settings_schema_unref(schema); }
};
struct UnrefKey {
    void operator()(GSettingsSchemaKey* key) const { g_settings_schema_key_unref(key); }
};
struct UnrefVariant {
    void operator()(GVariant* value) const { g_variant_unref(value); }
};
using Settings = std::unique_ptr<GSettings, Unref>;
using Backend = std::unique_ptr<GSettingsBackend, Unref>;
using Schema = std::unique_ptr<GSettingsSchema, UnrefSchema>;
using Variant = std::unique_ptr<GVariant, UnrefVariant>;

bool hasKey(GSettingsSchema* schema, const char* name, const GVariantType* type) {
    if (!g_settings_schema_has_key(schema, name)) return false;
    const std::unique_ptr<GSettingsSchemaKey, UnrefKey> key(g_settings_schema_get_key(schema, name));
    return g_variant_type_equal(g_settings_schema_key_get_value_type(key.get()), type);
}

std::optional<gint32> wholeNumber(std::string_view text) {
    gint32 number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return number;
}

Error refused(const std::string& why) { return {"gsettings", 1, why}; }

class GSettingsProvider : public SettingsProvider {
  public:
    GSettingsProvider(std::string schema, Settings settings)
        : name_("gsettings:" + std::move(schema)), settings_(std::move(settings)) {}

    std::string_view name() const override { return name_; }
    bool reachesRunningPrograms() const override { return true; }
    bool knowsPresentValue() const override { return true; }

    Result<PointerSetting> read() override {
        PointerSetting setting;
        if (const Variant theme{g_settings_get_user_value(settings_.get(), kThemeKey)}) {
            gsize length = 0;
            const char* const text = g_variant_get_string(theme.get(), &length);
            if (length > kLongestValue) return refused("the theme's name is too long");
            setting.theme = std::string(text, length);
        }
        if (const Variant size{g_settings_get_user_value(settings_.get(), kSizeKey)})
            setting.size = std::to_string(g_variant_get_int32(size.get()));
        return setting;
    }

    Status write(const PointerSetting& setting) override {
        std::optional<gint32> size;
        if (setting.size && !(size = wholeNumber(*setting.size))) return refused("the size is no number");
        for (const char* const key : {kThemeKey, kSizeKey})
            if (!g_settings_is_writable(settings_.get(), key))
                return refused(std::string(key) + " is locked");
        g_settings_delay(settings_.get());
        if (size)
            g_settings_set_int(settings_.get(), kSizeKey, *size);
        else
            g_settings_reset(settings_.get(), kSizeKey);
        if (setting.theme)
            g_settings_set_string(settings_.get(), kThemeKey, setting.theme->c_str());
        else
            g_settings_reset(settings_.get(), kThemeKey);
        g_settings_apply(settings_.get());
        g_settings_sync();
        const auto now = read();
        if (!now) return now.error();
        if (now.value() != setting) return refused("the values were not kept");
        return Done{};
    }

  private:
    const std::string name_;
    const Settings settings_;
};

}  // namespace

std::unique_ptr<SettingsProvider> makeGSettingsProvider(const GSettingsOptions& options) {
    // Making settings of a schema that is not there ends the process.
    auto* const source = g_settings_schema_source_get_default();
    if (!source) return nullptr;
    const Schema schema(g_settings_schema_source_lookup(source, options.schema.c_str(), TRUE));
    if (!schema || !hasKey(schema.get(), kThemeKey, G_VARIANT_TYPE_STRING) ||
        !hasKey(schema.get(), kSizeKey, G_VARIANT_TYPE_INT32))
        return nullptr;
    const Backend backend(options.keyfile
                              ? g_keyfile_settings_backend_new(options.keyfile->c_str(), "/", nullptr)
                              : g_settings_backend_get_default());
    const std::string_view kind = G_OBJECT_TYPE_NAME(backend.get());
    if (kind == "GMemorySettingsBackend" || kind == "GNullSettingsBackend") return nullptr;
    Settings settings(g_settings_new_full(schema.get(), backend.get(), nullptr));
    return std::make_unique<GSettingsProvider>(options.schema, std::move(settings));
}

}  // namespace pintle::wayland
