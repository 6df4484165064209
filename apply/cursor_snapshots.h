// The one-time backup of the desktop's own cursors, in memory and in a file, and their return. Owned by the
// SystemCursorChanger's maker and used through it. Main thread only.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "base/geometry.h"
#include "base/property_value.h"
#include "platform/bundle.h"
#include "platform/image_service.h"
#include "platform/log.h"
#include "platform/property_list_coder.h"
#include "platform/window_server.h"

namespace pintle {

struct CursorSnapshot {
    /// Of one frame, in points, as the window server reported it.
    Size size;
    /// In points from the top-left corner of a frame.
    Point hotspot;
    std::uint64_t frameCount = 0;
    /// Seconds per frame.
    double frameDuration = 0;
    /// Each image that the window server returned, a complete PNG file each.
    std::vector<std::vector<std::uint8_t>> pngReps;
    friend bool operator==(const CursorSnapshot&, const CursorSnapshot&) = default;
};

/// By desktop cursor identifier.
using CursorSnapshotMap = std::map<std::string, CursorSnapshot>;

/// The backup file's content. Absent when a frame count does not fit its integer.
std::optional<PropertyValue> encodeSnapshots(const CursorSnapshotMap& snapshots);
/// Absent when any entry lacks a field or holds one of another type.
std::optional<CursorSnapshotMap> decodeSnapshots(const PropertyValue& value);

class CursorSnapshots {
  public:
    CursorSnapshots(WindowServer& windowServer, ImageService& images, PropertyListCoder& propertyLists,
                    Log& log, const UserDirectories& directories);

    /// Empty until the first snapshot; never cleared.
    const CursorSnapshotMap& snapshots() const { return snapshots_; }

    /// Loads the backup file, or copies the ten basic cursors out of the window server and writes it.
    /// `themeArrowSize` is the size of the theme's arrow about to be registered: a desktop arrow of exactly
    /// this size is taken for a leftover theme and not written. Absent: no such check.
    void snapshotOriginalsIfNeeded(std::optional<Size> themeArrowSize);
    void restoreOriginals();

  private:
    bool load();
    void capture();
    void save();

    WindowServer& windowServer_;
    ImageService& images_;
    PropertyListCoder& propertyLists_;
    Log& log_;
    std::filesystem::path file_;
    CursorSnapshotMap snapshots_;
};

}  // namespace pintle
