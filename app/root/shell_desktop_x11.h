// Gives the shell's backends of the toolkit what the X server and the session bus know. Used by the root and
// by the tests of the shell. Main thread only.
#pragma once

#include "platform/qt/shell/shell_desktop.h"
#include "platform/x11/windows/x11_shell.h"

namespace pintle {

/// `x` must outlive what is made of it.
ShellDesktop makeShellDesktop(X11Shell& x);

}  // namespace pintle
