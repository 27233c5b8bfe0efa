// What all targets share: a clean start, the errors that an input may end in, and the check that
// nothing of it is left.
#pragma once

#include "fuzz/byte_source.h"
#include "support/living.h"

#include <cstddef>
#include <exception>
#include <string>

// One case, made from the input. Ends the process when the case shows a fault.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz {

// Brings the module up, once, and lets output and warnings go nowhere.
void prepare();

// Ends the process with that text.
[[noreturn]] void fail(const std::string& what);

// Ends the process for an error without an identifier of its own, unless memory or folding a name
// failed.
void expectDocumented(std::exception_ptr error);

// Runs `action`, which may raise a documented error.
template <class Action>
void attempt(Action&& action) {
    try {
        action();
    } catch (...) {
        expectDocumented(std::current_exception());
    }
}

// Counts at its end what is alive: as much as at its start, or the process ends.
class NothingLeft {
  public:
    NothingLeft() = default;
    NothingLeft(const NothingLeft&) = delete;
    NothingLeft& operator=(const NothingLeft&) = delete;
    ~NothingLeft() {
        if (const std::string left = before_.newcomers(); !left.empty()) fail("alive: " + left);
    }

  private:
    const axlink2::test::Living before_ = {};
};

} // namespace fuzz
