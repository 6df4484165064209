// A process runner whose children a test plays: it writes what they would write and ends them.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/main_queue.h"
#include "platform/process_runner.h"

namespace pintle {

class FakeProcessRunner : public ProcessRunner {
  public:
    explicit FakeProcessRunner(MainQueue& queue) : queue_(queue) {}

    std::unique_ptr<ChildProcess> start(ProcessRequest request, Completion completion) override;

    /// Ends a child, counted from 0 by the order of their start, after writing `errorText` to its error file.
    void end(std::size_t which, int status, const std::string& errorText = {});
    /// Answers as if the child could not be started.
    void refuse(std::size_t which, std::string description);

    bool running(std::size_t which) const { return children_[which]->running; }
    bool killed(std::size_t which) const { return children_[which]->killed; }
    /// When set, plays each child right after its start: does its work and answers its exit status.
    std::function<int(const ProcessRequest&)> play;
    /// Every request, in the order of their start.
    std::vector<ProcessRequest> requests;

  private:
    struct Child {
        Completion completion;
        bool running = true;
        bool killed = false;
        bool wanted = true;
    };
    class Handle;
    static void finish(MainQueue& queue, const std::shared_ptr<Child>& child, Result<int> status);

    MainQueue& queue_;
    std::vector<std::shared_ptr<Child>> children_;
};

}  // namespace pintle
