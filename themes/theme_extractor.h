// Turns the archive of a theme into its folder on disk: unpacks it in a scratch folder by the system's
// archiver, chooses the folder of cursors and moves it into place. Used by the downloads; main thread, the
// work itself runs in the background and in a child process.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <string>

#include "base/flow.h"
#include "base/result.h"
#include "base/subscription.h"
#include "platform/background_tasks.h"
#include "platform/main_queue.h"
#include "platform/process_runner.h"
#include "themes/theme_work.h"

namespace pintle {

/// An archive that passes one of these is answered like one that cannot be unpacked. The largest of the
/// catalog, a whole icon theme, stays below a quarter of each.
struct ExtractionLimits {
    std::uint64_t bytes = std::uint64_t{1} << 30;
    std::uint64_t entries = 100'000;
    int depth = 64;
    /// How often the scratch folder is measured while the archiver runs.
    std::chrono::milliseconds interval{250};
    /// Of the archiver: what it may compute, and how long it may take for whatever reason.
    std::chrono::seconds processorTime{30};
    std::chrono::seconds deadline{120};
};

class ThemeExtractor {
  public:
    struct Dependencies {
        ProcessRunner& processes;
        ThemeWork& work;
        MainQueue& mainQueue;
        BackgroundTasks& background;
    };
    using Completion = std::function<void(Status)>;

    explicit ThemeExtractor(const Dependencies& dependencies, ExtractionLimits limits = {});
    ~ThemeExtractor();
    ThemeExtractor(const ThemeExtractor&) = delete;
    ThemeExtractor& operator=(const ThemeExtractor&) = delete;

    /// Installs the cursors of `archive` as `destination` / "cursors", replacing what is there. The archive
    /// stays. `done` runs on the main queue, never inside this call, while nobody else may work on
    /// the theme; it does not run when all work has been ended.
    void extract(const std::filesystem::path& archive, const std::string& themeId,
                 const std::filesystem::path& destination, Completion done);

    /// See themes/archive_layout.h.
    static std::optional<std::filesystem::path> pickCursorDirectory(const std::filesystem::path& root,
                                                                    const std::string& themeId);

  private:
    struct Extraction {
        Status status = Done{};
        /// Kept until the completion has run.
        ThemeWork::Turn turn;
        Flow flow;
    };
    /// The whole of one extraction; its outcome goes into `status`.
    Flow run(std::filesystem::path archive, std::string themeId, std::filesystem::path destination,
             Status& status, ThemeWork::Turn& turn);

    const Dependencies deps_;
    const ExtractionLimits limits_;
    std::list<Extraction> extractions_;
    Subscription workEnded_;
};

}  // namespace pintle
