// Runs source text in a session and gives what a person would see.
#pragma once

#include "host/embedding.h"
#include "shell/session.h"

#include <gtest/gtest.h>

#include <string>

namespace velsh::test {

// What the program printed, then the error line if there was one.
class SourceRunner {
  public:
    SourceRunner() {
        velmar::setOutput([this](std::string_view text) { seen_ += text; });
        velmar::setWarningWriter([this](const std::string& identifier, const std::u16string&) {
            seen_ += "warning " + identifier + "\n";
        });
    }
    ~SourceRunner() {
        velmar::setOutput({});
        velmar::setWarningWriter({});
    }

    std::string run(std::string_view source, const std::string& name = {}) {
        seen_.clear();
        testing::internal::CaptureStderr();
        session_.run(source, name);
        return seen_ + testing::internal::GetCapturedStderr();
    }
    Session& session() { return session_; }

  private:
    std::string seen_;
    Session session_;
};

struct Case {
    const char* source;
    const char* seen;
};

// Each in a session of its own, behind the prologue.
template <std::size_t count>
void expectSeen(const Case (&cases)[count], const char* prologue = "") {
    for (const Case& row : cases) {
        SourceRunner runner;
        EXPECT_EQ(runner.run(prologue + std::string(row.source)), row.seen) << row.source;
    }
}

} // namespace velsh::test
