// What a user does, done by this program to itself. Main thread only; needs the running application object.
#pragma once

namespace pintle {

/// Presses and releases the key of that letter for the window that has the keys; false when none has.
bool pressKey(char letter, unsigned short code);
bool isActiveProgram();
void hideThisProgram();
void showThisProgram();

}  // namespace pintle
