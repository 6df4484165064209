// Whether another process is ready for a signal. A program that is signalled to read its settings again
// before it has installed its handler ends instead.
#pragma once

#include <signal.h>
#include <sys/types.h>

#include <chrono>
#include <fstream>
#include <string>
#include <thread>

namespace pintle {

inline bool catchesSignal(pid_t process, int signal) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("SigCgt:"))
            return (std::stoull(line.substr(7), nullptr, 16) >> (signal - 1) & 1) != 0;
    return false;
}

/// Sends the signal as soon as the process catches it; after ten seconds in any case.
inline void signalWhenCaught(pid_t process, int signal) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    // Nobody reports that another process begins to catch a signal.
    while (!catchesSignal(process, signal) && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    ::kill(process, signal);
}

}  // namespace pintle
