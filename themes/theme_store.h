// The themes folder on disk: whether a theme counts as downloaded, where its cursor files lie, its preview.
// Nothing else records what is downloaded. Used by the theme list and the application pipeline.
// Main thread, except for what says otherwise.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "base/bitmap.h"
#include "base/lifetime.h"
#include "platform/background_tasks.h"
#include "platform/bundle.h"
#include "platform/log.h"

namespace pintle {

class ThemeStore {
  public:
    /// The application-support folder of `directories` must not be empty; an empty one ends the program.
    ThemeStore(const UserDirectories& directories, Log& log);

    /// The folder that holds one folder per downloaded theme, named by the theme's id. Any thread.
    const std::filesystem::path& themesDirectory() const { return themesDirectory_; }

    /// The folder of a theme, there or not. Absent when the id is no plain name of a folder (empty, ".",
    /// "..", or with a separator), so that no id leads out of the themes folder. Any thread.
    std::optional<std::filesystem::path> themeDirectory(const std::string& themeId) const;

    /// Makes the themes folder with its parents. A failure is logged only.
    void createDirectoriesIfNeeded();

    /// Whether the theme's folder holds a cursors folder with at least one entry. A folder of a theme that
    /// fails this is removed whole.
    bool isThemeDownloaded(const std::string& themeId);

    /// The "cursors" entry of a theme's folder, or else the first one in a folder directly inside it. Only
    /// looks whether there is one, not whether it is a folder. Absent when there is none.
    std::optional<std::filesystem::path> findCursorsDirectory(const std::filesystem::path& themeDir) const;
    /// The same without log lines. Any thread.
    static std::optional<std::filesystem::path> findCursorsDirectoryNonisolated(
        const std::filesystem::path& themeDir);

    /// The theme's arrow at the size nearest to 32; absent when it has none that can be read.
    std::optional<Bitmap> loadPreviewImage(const std::string& themeId) const;
    /// The same in the background and without log lines. `done` is called on the main queue if the owner of
    /// `lifetime` still lives.
    void loadPreviewImageAsync(const std::string& themeId, BackgroundTasks& tasks, MainQueue& queue,
                               const Lifetime& lifetime,
                               std::function<void(std::optional<Bitmap>)> done) const;

  private:
    std::filesystem::path themesDirectory_;
    Log& log_;
};

}  // namespace pintle
