#include "platform/fake/fake_process_runner.h"

#include <csignal>
#include <fstream>

namespace pintle {

class FakeProcessRunner::Handle : public ChildProcess {
  public:
    Handle(MainQueue& queue, std::shared_ptr<Child> child) : queue_(queue), child_(std::move(child)) {}
    ~Handle() override {
        if (child_->running) child_->killed = true;
        child_->running = false;
        child_->wanted = false;
    }
    void kill() override {
        if (!child_->running) return;
        child_->killed = true;
        finish(queue_, child_, SIGKILL);
    }

  private:
    MainQueue& queue_;
    std::shared_ptr<Child> child_;
};

std::unique_ptr<ChildProcess> FakeProcessRunner::start(ProcessRequest request, Completion completion) {
    auto child = std::make_shared<Child>();
    child->completion = std::move(completion);
    children_.push_back(child);
    requests.push_back(request);
    if (play) finish(queue_, child, play(request));
    return std::make_unique<Handle>(queue_, child);
}

void FakeProcessRunner::end(std::size_t which, int status, const std::string& errorText) {
    std::ofstream(requests[which].standardError, std::ios::app | std::ios::binary) << errorText;
    finish(queue_, children_[which], status);
}

void FakeProcessRunner::refuse(std::size_t which, std::string description) {
    finish(queue_, children_[which], Error{"process", -1, std::move(description)});
}

void FakeProcessRunner::finish(MainQueue& queue, const std::shared_ptr<Child>& child, Result<int> status) {
    if (!child->running) return;
    child->running = false;
    queue.post([child, status = std::move(status)] {
        if (child->wanted) child->completion(status);
    });
}

}  // namespace pintle
