// Deletes one downloaded theme. Used by the view model; main thread, the files go in the background.
#pragma once

#include <list>
#include <string>

#include "base/flow.h"
#include "base/result.h"
#include "base/signal.h"
#include "platform/background_tasks.h"
#include "platform/key_value_store.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "settings/cursor_settings.h"
#include "themes/cursor_theme_info.h"
#include "themes/theme_list.h"
#include "themes/theme_store.h"
#include "themes/theme_work.h"

namespace pintle {

class ThemeRemoval {
  public:
    struct Dependencies {
        CursorSettings& settings;
        KeyValueStore& preferences;
        ThemeList& themes;
        ThemeStore& store;
        ThemeWork& work;
        MainQueue& mainQueue;
        BackgroundTasks& background;
        Log& log;
    };

    explicit ThemeRemoval(const Dependencies& dependencies) : deps_(dependencies) {}

    /// Returns at once. A failure is shown in the row and not stored.
    void deleteTheme(const CursorThemeInfo& theme);

    /// The theme of this id has been deleted and its row says so.
    Signal<const std::string&> deleted;

  private:
    Flow run(std::string id);
    void finish(const std::string& id, const Status& status);

    const Dependencies deps_;
    std::list<Flow> removals_;
};

}  // namespace pintle
