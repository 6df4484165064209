// A disk that is full for this process, without a disk of one's own.
#pragma once

#include <sys/resource.h>

#include <csignal>

namespace pintle {

/// No file of this process grows beyond `bytes` while this lives.
class FullDisk {
  public:
    explicit FullDisk(rlim_t bytes) {
        before_ = ::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &limit_);
        const rlimit small{bytes, limit_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &small);
    }
    ~FullDisk() {
        ::setrlimit(RLIMIT_FSIZE, &limit_);
        ::signal(SIGXFSZ, before_);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

  private:
    rlimit limit_ = {};
    void (*before_)(int) = nullptr;
};

}  // namespace pintle
