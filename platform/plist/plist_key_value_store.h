// The preference store in one XML property list. Made by the root in its first stage; main thread only.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>

#include "platform/background_tasks.h"
#include "platform/key_value_store.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "platform/property_list_coder.h"

namespace pintle {

/// Waits until a file is on the disk; false when the system could not do it. Runs on a background thread,
/// and on the main one for synchronize().
using BringToDisk = std::function<bool(const std::filesystem::path& file)>;

/// Each write puts the whole list beside `file` and renames it into place before observers are notified,
/// merged key by key with what another process has written since; values of keys unknown here stay. The
/// disk follows in the background at most once a second, and at synchronize() and the end. A file that is no
/// property list, or cannot be read, is put aside as FILE.damaged-N and reported; where even that fails, or
/// the disk is full, values are kept in memory and tried again with the next write. What is written by other
/// processes shows here after the next write. Everything given must outlive the store.
std::unique_ptr<KeyValueStore> makePlistKeyValueStore(std::filesystem::path file, PropertyListCoder& coder,
                                                      Log& log, MainQueue& queue, BackgroundTasks& tasks);
/// With another way of bringing a file to the disk.
std::unique_ptr<KeyValueStore> makePlistKeyValueStore(std::filesystem::path file, PropertyListCoder& coder,
                                                      Log& log, MainQueue& queue, BackgroundTasks& tasks,
                                                      BringToDisk bringToDisk);

}  // namespace pintle
