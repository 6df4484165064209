// Where the message buses are, and whether somebody is there. Any thread.
#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace pintle {

enum class BusKind { session, system };

/// A bus that has gone is looked for after the first of these, and each time after twice as long.
inline constexpr std::chrono::seconds kFirstBusRetry{1};
inline constexpr std::chrono::seconds kLastBusRetry{30};

/// As a bus is asked for that was started again at its old place. Absent when nothing names one.
std::optional<std::string> busAddress(BusKind kind);

/// Whether someone behind the address speaks the protocol. Takes up to a second: the library's own first call
/// has no time limit that can be set, and a stopped bus would hang the caller for half a minute.
bool busAnswers(const std::string& address);

}  // namespace pintle
