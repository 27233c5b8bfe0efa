// Errors, silence and counts for all targets.
#include "fuzz/fuzz_target.h"

#include "builtins/fold_name.h"
#include "entry/entry.h"
#include "host/array.h"
#include "host/embedding.h"
#include "platform/com.h"
#include "servers/kit/live_objects.h"

#include <cstdio>
#include <cstdlib>

namespace fuzz {

void prepare() {
    static const bool ready = [] {
        RegisterAxlink2();
        velmar::setOutput([](std::string_view) {});
        velmar::setWarningWriter([](const std::string&, const std::u16string&) {});
        return true;
    }();
    static_cast<void>(ready);
}

void fail(const std::string& what) {
    std::fprintf(stderr, "FAULT: %s\n", what.c_str());
    std::abort();
}

void expectDocumented(std::exception_ptr error) {
    try {
        std::rethrow_exception(error);
    } catch (const std::bad_alloc&) {
        return;
    } catch (const hbase::ustring::CtypeInvalidCharacter&) {
        return; // names that can't be folded are refused in this way
    } catch (...) {
    }
    const velmar::ErrorText described = velmar::describeError(error);
    if (described.identifier == "VELMAR:internal" || described.identifier.empty())
        fail("an error without an identifier: " + described.text);
}

NothingLeft::NothingLeft()
    : comObjects_(kit::liveObjects()), hostObjects_(velmar::liveObjectCount()),
      arrays_(hxLiveArrayCount()) {}

NothingLeft::~NothingLeft() {
    for (const std::string& name : kit::liveObjectNames())
        if (kit::liveObjects() != comObjects_) std::fprintf(stderr, "alive: %s\n", name.c_str());
    if (kit::liveObjects() != comObjects_) fail("COM objects are left");
    if (velmar::liveObjectCount() != hostObjects_) fail("objects of the host are left");
    if (hxLiveArrayCount() != arrays_) fail("arrays of the host are left");
}

} // namespace fuzz
