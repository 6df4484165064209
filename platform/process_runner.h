// Child processes that are awaited without blocking a thread. Main thread only.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/result.h"

namespace pintle {

/// Standard input and standard output of the child are the null device.
struct ProcessRequest {
    std::filesystem::path executable;
    std::vector<std::string> arguments;
    /// An existing file that receives the child's error output, appended.
    std::filesystem::path standardError;
    /// No file that the child writes may grow beyond this, in bytes; absent: no limit of ours.
    std::optional<std::uint64_t> largestFile;
    /// A child that has used the processors for this long ends as by the signal SIGXCPU; absent: no limit of
    /// ours.
    std::optional<std::chrono::seconds> processorTime = std::nullopt;
};

/// A running child. Destroying it kills the child, waits until it is gone, and nothing is called any more.
/// A child never outlives this program.
class ChildProcess {
  public:
    virtual ~ChildProcess() = default;
    /// Ends the child at once; the completion still comes.
    virtual void kill() = 0;
};

class ProcessRunner {
  public:
    /// The exit status, or the number of the signal that ended the child; an error with a description for
    /// people when it could not be started.
    using Completion = std::function<void(Result<int> status)>;

    virtual ~ProcessRunner() = default;
    /// `completion` runs once on the main queue, never inside this call.
    virtual std::unique_ptr<ChildProcess> start(ProcessRequest request, Completion completion) = 0;
};

/// What runs on this desktop instead of an executable that the core names.
struct ProcessSubstitute {
    std::filesystem::path executable;
    /// Put before the arguments of the request.
    std::vector<std::string> arguments;
    /// All that the child finds in its environment. Empty: it inherits ours.
    std::map<std::string, std::string> environment;
    /// The error when the executable is not there.
    std::string missing;
};
/// By the executable that the core names.
using ProcessSubstitutes = std::map<std::filesystem::path, ProcessSubstitute>;

}  // namespace pintle
