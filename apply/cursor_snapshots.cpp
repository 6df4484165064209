#include "apply/cursor_snapshots.h"

#include <fmt/format.h>

#include <cmath>
#include <limits>
#include <system_error>
#include <utility>

#include "apply/cursor_identifiers.h"
#include "base/own_file.h"

namespace pintle {
namespace {

/// Ten cursors as PNG files are far smaller; a larger file is not ours.
constexpr std::size_t kMaxBackupBytes = std::size_t{64} << 20;

PropertyArray pair(double first, double second) { return {PropertyValue(first), PropertyValue(second)}; }

/// Property lists made by others may hold whole numbers where reals are meant, and the other way round.
std::optional<double> real(const PropertyValue& value) {
    if (const auto* number = value.as<double>()) return *number;
    if (const auto* number = value.as<std::int64_t>()) return static_cast<double>(*number);
    return std::nullopt;
}

std::optional<std::uint64_t> unsignedInteger(const PropertyValue& value) {
    if (const auto* number = value.as<std::int64_t>(); number && *number >= 0)
        return static_cast<std::uint64_t>(*number);
    if (const auto* number = value.as<double>();
        number && *number >= 0 && *number < 0x1p63 && *number == std::trunc(*number))
        return static_cast<std::uint64_t>(*number);
    return std::nullopt;
}

std::optional<std::pair<double, double>> realPair(const PropertyValue& value) {
    const auto* array = value.as<PropertyArray>();
    if (!array || array->size() != 2) return std::nullopt;
    const auto first = real((*array)[0]);
    const auto second = real((*array)[1]);
    if (!first || !second) return std::nullopt;
    return std::pair{*first, *second};
}

const PropertyValue* member(const PropertyDictionary& dictionary, const char* key) {
    const auto found = dictionary.find(key);
    return found == dictionary.end() ? nullptr : &found->second;
}

std::optional<CursorSnapshot> decodeSnapshot(const PropertyValue& value) {
    const auto* dictionary = value.as<PropertyDictionary>();
    if (!dictionary) return std::nullopt;
    const auto* size = member(*dictionary, "size");
    const auto* hotspot = member(*dictionary, "hotspot");
    const auto* frameCount = member(*dictionary, "frameCount");
    const auto* frameDuration = member(*dictionary, "frameDuration");
    const auto* pngReps = member(*dictionary, "pngReps");
    if (!size || !hotspot || !frameCount || !frameDuration || !pngReps) return std::nullopt;

    const auto sides = realPair(*size);
    const auto place = realPair(*hotspot);
    const auto count = unsignedInteger(*frameCount);
    const auto duration = real(*frameDuration);
    const auto* files = pngReps->as<PropertyArray>();
    if (!sides || !place || !count || !duration || !files) return std::nullopt;

    CursorSnapshot snapshot{
        {sides->first, sides->second}, {place->first, place->second}, *count, *duration, {}};
    for (const auto& file : *files) {
        const auto* bytes = file.as<PropertyData>();
        if (!bytes) return std::nullopt;
        snapshot.pngReps.push_back(*bytes);
    }
    return snapshot;
}

}  // namespace

std::optional<PropertyValue> encodeSnapshots(const CursorSnapshotMap& snapshots) {
    PropertyDictionary root;
    for (const auto& [identifier, snapshot] : snapshots) {
        if (snapshot.frameCount > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()))
            return std::nullopt;
        PropertyArray files;
        for (const auto& file : snapshot.pngReps) files.emplace_back(file);
        PropertyDictionary entry;
        entry.emplace("size", pair(snapshot.size.width, snapshot.size.height));
        entry.emplace("hotspot", pair(snapshot.hotspot.x, snapshot.hotspot.y));
        entry.emplace("frameCount", static_cast<std::int64_t>(snapshot.frameCount));
        entry.emplace("frameDuration", snapshot.frameDuration);
        entry.emplace("pngReps", std::move(files));
        root.emplace(identifier, std::move(entry));
    }
    return std::optional<PropertyValue>(std::in_place, std::move(root));
}

std::optional<CursorSnapshotMap> decodeSnapshots(const PropertyValue& value) {
    const auto* root = value.as<PropertyDictionary>();
    if (!root) return std::nullopt;
    CursorSnapshotMap snapshots;
    for (const auto& [identifier, entry] : *root) {
        auto snapshot = decodeSnapshot(entry);
        if (!snapshot) return std::nullopt;
        snapshots.emplace(identifier, std::move(*snapshot));
    }
    return snapshots;
}

CursorSnapshots::CursorSnapshots(WindowServer& windowServer, ImageService& images,
                                 PropertyListCoder& propertyLists, Log& log,
                                 const UserDirectories& directories)
    : windowServer_(windowServer),
      images_(images),
      propertyLists_(propertyLists),
      log_(log),
      file_(directories.applicationSupport / "Pintle" / "system_cursor_backup.plist") {}

void CursorSnapshots::snapshotOriginalsIfNeeded(std::optional<Size> themeArrowSize) {
    if (!snapshots_.empty() || load()) return;
    if (!windowServer_.provides(WindowServerFunction::mainConnectionID) ||
        !windowServer_.provides(WindowServerFunction::copyRegisteredCursorImages))
        return;
    capture();

    const auto arrow = snapshots_.find(std::string(kArrowIdentifier));
    if (themeArrowSize && arrow != snapshots_.end() && arrow->second.size == *themeArrowSize) {
        log_.system("[SystemCursorChanger] Snapshot looks already themed - not persisting");
        return;
    }
    if (!snapshots_.empty()) save();
}

void CursorSnapshots::restoreOriginals() {
    if (!windowServer_.provides(WindowServerFunction::mainConnectionID) ||
        !windowServer_.provides(WindowServerFunction::registerCursorWithImages))
        return;
    const auto connection = windowServer_.mainConnectionID();
    for (const auto& [identifier, snapshot] : snapshots_) {
        RegisteredCursor cursor{
            identifier, {}, snapshot.size, snapshot.hotspot, snapshot.frameCount, snapshot.frameDuration};
        for (const auto& file : snapshot.pngReps)
            if (auto image = images_.decodePng(file)) cursor.images.push_back(std::move(*image));
        if (!cursor.images.empty())
            windowServer_.registerCursorWithImages(connection, cursor, RegistrationPurpose::original);
    }
    log_.system(
        fmt::format("[SystemCursorChanger] Restored {} original coregraphics cursors", snapshots_.size()));
}

bool CursorSnapshots::load() {
    const auto file = readOwnFile(file_, kMaxBackupBytes);
    if (!file) return false;
    const auto value = propertyLists_.decode(file.value().bytes);
    if (!value) return false;
    auto loaded = decodeSnapshots(*value);
    if (!loaded || loaded->empty()) return false;
    snapshots_ = std::move(*loaded);
    return true;
}

void CursorSnapshots::capture() {
    const auto connection = windowServer_.mainConnectionID();
    for (const auto& row : backedUpIdentifiers()) {
        const std::string identifier(row.identifier);
        const auto copied = windowServer_.copyRegisteredCursorImages(connection, identifier);
        if (copied.error != 0) continue;
        CursorSnapshot snapshot{copied.cursor.size,
                                copied.cursor.hotspot,
                                copied.cursor.frameCount,
                                copied.cursor.frameDuration,
                                {}};
        for (const auto& image : copied.cursor.images)
            if (auto file = images_.encodePng(image)) snapshot.pngReps.push_back(std::move(*file));
        if (!snapshot.pngReps.empty()) snapshots_.insert_or_assign(identifier, std::move(snapshot));
    }
}

void CursorSnapshots::save() {
    const auto value = encodeSnapshots(snapshots_);
    if (!value) return;
    const auto bytes = propertyLists_.encode(*value, PropertyListFormat::binary);
    if (!bytes) return;
    std::error_code ignored;
    std::filesystem::create_directories(file_.parent_path(), ignored);
    (void)replaceOwnFile(file_, *bytes);
    log_.system(
        fmt::format("[SystemCursorChanger] Saved original cursor backup ({} entries)", snapshots_.size()));
}

}  // namespace pintle
