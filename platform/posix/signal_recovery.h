// What happens to the pointer when the process dies by a signal. Installed once by the root, early.
#pragma once

namespace pintle {

/// Must be async-signal-safe.
using RecoveryFunction = void (*)();

/// For SIGABRT, SIGSEGV and SIGTERM: calls `recover` (null: nothing, for a desktop that shows a hidden
/// pointer again when its client goes), gives the signal its default meaning back and raises it again, so
/// that the process ends by that signal. Main thread, before other threads start.
void installSignalRecovery(RecoveryFunction recover);

}  // namespace pintle
