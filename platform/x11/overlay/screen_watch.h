// Whether somebody watches or records the screen. X11 cannot answer that: any client may read the screen and
// nobody is notified. So this looks for programs that do nothing else: servers that show this desktop
// elsewhere, and recorders started for one recording. It cannot see a browser or a meeting program that
// shares the screen. A recorder that stays open between recordings would count all the time and is not looked
// for. The program's excluded applications serve those cases. Main thread.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "platform/background_tasks.h"
#include "platform/main_queue.h"

namespace pintle::overlay {

/// Whether a process of that short name and command line, whose words end with a zero byte each, is such a
/// program.
bool watchesTheScreen(const std::string& name, const std::string& commandLine);

/// The function that the overlay asks: false until the processes were looked through, then the last answer.
/// Looks again, in the background, when the answer is five seconds old. `processes` is the folder of
/// processes. Both references outlive the function.
std::function<bool()> makeScreenWatch(MainQueue& queue, BackgroundTasks& background,
                                      std::filesystem::path processes = "/proc");

}  // namespace pintle::overlay
