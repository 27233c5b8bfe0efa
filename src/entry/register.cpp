// Registration of the module with the host.
#include "classmodel/namespaces.h"
#include "conversion/arg_converter.h"
#include "entry/entry.h"
#include "platform/com.h"

#include <cstdlib>

namespace axlink2 {
namespace {

INIT_ONCE registration = INIT_ONCE_STATIC_INIT;

// The one attempt that is under way. Unless it is told of success, it ends as failed and the next
// call starts over.
class Attempt {
  public:
    Attempt() = default;
    Attempt(const Attempt&) = delete;
    Attempt& operator=(const Attempt&) = delete;
    ~Attempt() {
        if (!InitOnceComplete(&registration, succeeded_ ? 0 : INIT_ONCE_INIT_FAILED, nullptr))
            std::abort();
    }
    void succeed() { succeeded_ = true; }

  private:
    bool succeeded_ = false;
};

} // namespace
} // namespace axlink2

void RegisterAxlink2() {
    BOOL pending = FALSE;
    // Nothing sound can follow a guard that doesn't work.
    if (!InitOnceBeginInitialize(&axlink2::registration, 0, &pending, nullptr)) std::abort();
    if (!pending) return;

    axlink2::Attempt attempt;
    // The interpreter thread stays an apartment; one that is of another kind already stays that.
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    axlink2::addNamespaces();
    axlink2::initConverters();
    attempt.succeed();
}
