// Returns the application to its first-run state: no theme, no preference, the desktop's own cursors. Offered
// by the settings window through the view model; the caller then informs the user and quits. Main thread
// only.
#pragma once

#include "apply/application_pipeline.h"
#include "apply/cursor_applier.h"
#include "apply/system_cursor_changer.h"
#include "platform/key_value_store.h"
#include "platform/log.h"
#include "settings/cursor_settings.h"
#include "themes/theme_store.h"
#include "themes/theme_work.h"

namespace pintle {

class FullReset {
  public:
    struct Dependencies {
        CursorSettings& settings;
        KeyValueStore& preferences;
        ThemeStore& store;
        ThemeWork& work;
        ApplicationPipeline& pipeline;
        CursorApplier& applier;
        SystemCursorChanger& changer;
        Log& log;
    };

    explicit FullReset(const Dependencies& dependencies) : deps_(dependencies) {}

    /// Ends all work under way first: nothing of it reaches the disk or the screen from then on. The rows of
    /// the theme list stay as they are, and so do the folder "Pintle" and the backup of the desktop's
    /// cursors.
    void run();

  private:
    void deleteThemes();

    const Dependencies deps_;
};

}  // namespace pintle
