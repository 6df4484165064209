// Downloads themes: fetches the archive, has it unpacked, and keeps the row of the list up to date on the
// way. Used by the view model. Main thread; the steps of a download stand in the .cpp in their order.
#pragma once

#include <filesystem>
#include <list>
#include <memory>
#include <optional>
#include <string>

#include "base/flow.h"
#include "base/lifetime.h"
#include "base/result.h"
#include "base/signal.h"
#include "base/subscription.h"
#include "platform/background_tasks.h"
#include "platform/http_client.h"
#include "platform/key_value_store.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "settings/cursor_settings.h"
#include "themes/cursor_theme_info.h"
#include "themes/scratch.h"
#include "themes/theme_extractor.h"
#include "themes/theme_list.h"
#include "themes/theme_store.h"
#include "themes/theme_work.h"

namespace pintle {

class ThemeDownloads {
  public:
    struct Dependencies {
        CursorSettings& settings;
        KeyValueStore& preferences;
        ThemeList& themes;
        ThemeStore& store;
        ThemeExtractor& extractor;
        ThemeWork& work;
        HttpClient& http;
        MainQueue& mainQueue;
        BackgroundTasks& background;
        Log& log;
    };
    /// In bytes; a longer archive is refused. The largest of the catalog has a tenth of it.
    static constexpr std::uint64_t archiveLimit = std::uint64_t{512} << 20;

    /// Archives are received in the folder `temporary`. `mirror`, when present, replaces scheme and host of
    /// every address.
    ThemeDownloads(const Dependencies& dependencies, std::filesystem::path temporary,
                   std::optional<std::string> mirror);
    ~ThemeDownloads();
    ThemeDownloads(const ThemeDownloads&) = delete;
    ThemeDownloads& operator=(const ThemeDownloads&) = delete;

    /// Returns at once. A download that has begun runs to its end; a second one of the same theme may begin
    /// meanwhile.
    void downloadTheme(const CursorThemeInfo& theme);

    /// A theme has just been downloaded and its row says so.
    Signal<> downloaded;
    /// The download of the theme of this id has just failed for want of a network, and its row says so.
    Signal<const std::string&> wantedNetwork;

  private:
    void downloadThemeAsync(const CursorThemeInfo& theme);
    /// The whole of one download, from the request to the preview.
    Flow run(std::string id, std::string address);
    Status received(const std::string& id, ArchiveFile& archive, const Result<HttpResponse>& result);
    void line(const std::string& id, const std::string& text);
    template <typename Change>
    void changeRow(const std::string& id, Change change);

    const Dependencies deps_;
    const std::filesystem::path temporary_;
    const std::optional<std::string> mirror_;
    std::list<Flow> downloads_;
    Subscription workEnded_;
    Lifetime lifetime_;
};

}  // namespace pintle
