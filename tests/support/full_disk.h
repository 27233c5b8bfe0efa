// A disk on which little fits, where the system can say so.
#pragma once

#include <csignal>
#include <sys/resource.h>

namespace axlink2::test {

// As long as it lives, no file of the program can grow beyond that many bytes.
class FullDisk {
  public:
    explicit FullDisk(rlim_t bytes) : oldHandler_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &old_);
        const rlimit now{bytes, old_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &now);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;
    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &old_);
        std::signal(SIGXFSZ, oldHandler_);
    }

  private:
    rlimit old_{};
    void (*oldHandler_)(int);
};

} // namespace axlink2::test
