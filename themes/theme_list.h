// The theme list as it is published to the views, and the only writer of its rows. Owned by the view model,
// which the other modules ask to change a row. Main thread only.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "base/signal.h"
#include "platform/log.h"
#include "settings/cursor_settings.h"
#include "themes/cursor_theme_info.h"
#include "themes/theme_store.h"

namespace pintle {

class ThemeList {
  public:
    /// Empty until loadThemes(). All must outlive the list.
    ThemeList(ThemeStore& store, CursorSettings& settings, Log& log);

    /// The rows in catalog order. Valid until the next change.
    const std::vector<CursorThemeInfo>& themes() const { return themes_; }
    /// The row with this id; null when there is none. Valid until the next change.
    const CursorThemeInfo* find(const std::string& id) const;

    /// Makes the rows anew from the catalog and the disk, and publishes them at once. Removes damaged themes
    /// and clears the stored errors of themes that are there.
    void loadThemes();

    /// These do nothing when no row has the id.
    void setApplying(const std::string& id, bool applying);
    /// Replaces the row with the id of `row`.
    void replace(CursorThemeInfo row);
    /// Marks each row as its id is marked here, rows without an entry as still. Publishes once.
    void setAnimated(const std::map<std::string, bool>& animated);

    /// The rows have changed.
    Signal<> changed;

  private:
    CursorThemeInfo* row(const std::string& id);

    ThemeStore& store_;
    CursorSettings& settings_;
    Log& log_;
    std::vector<CursorThemeInfo> themes_;
};

}  // namespace pintle
