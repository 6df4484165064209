// The window server's cursor registry, by the platform's own private functions. Every function may be missing
// by itself; calling a missing one is a programming error. Main thread only.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/registered_cursor.h"

namespace pintle {

using ConnectionId = std::uint32_t;

enum class WindowServerFunction {
    mainConnectionID,
    registerCursorWithImages,
    coreCursorUnregisterAll,
    copyRegisteredCursorImages,
};

/// Who a registration is made for: a theme's picture, or the desktop's own cursor coming back.
enum class RegistrationPurpose { theme, original };

/// 0 = success, the platform's error code, or kRegistrationSkipped.
using RegistrationAnswer = std::optional<int>;
/// No image of the cursor has a form that the platform takes: the platform was not asked, and what is in
/// force under the identifier stays. Neither a success nor an error worth a line in the log.
inline constexpr RegistrationAnswer kRegistrationSkipped = std::nullopt;

struct CopiedCursor {
    /// 0 = success; anything else leaves `cursor` without images.
    int error = 0;
    RegisteredCursor cursor;
};

class WindowServer {
  public:
    virtual ~WindowServer() = default;

    /// Whether the function was found. The first question about a function settles its answer for the life
    /// of the process, except that a function that was found may be lost with its connection.
    virtual bool provides(WindowServerFunction function) = 0;

    virtual ConnectionId mainConnectionID() = 0;
    /// Registers for the whole desktop, at once in effect for new questions to this interface; what is on
    /// screen follows with flush().
    virtual RegistrationAnswer registerCursorWithImages(ConnectionId connection,
                                                        const RegisteredCursor& cursor,
                                                        RegistrationPurpose purpose) = 0;
    /// Withdraws every registration of this program. Returns 0 or the platform's error code.
    virtual int coreCursorUnregisterAll(ConnectionId connection) = 0;
    virtual CopiedCursor copyRegisteredCursorImages(ConnectionId connection,
                                                    const std::string& identifier) = 0;

    /// Sends what changed since the last flush, as one step. Called by the root at the end of each main-queue
    /// turn and before the process ends. Nothing on a desktop whose registrations take effect by themselves.
    virtual void flush() = 0;
};

}  // namespace pintle
