// Errors and silence for all targets.
#include "fuzz/fuzz_target.h"

#include "builtins/fold_name.h"
#include "entry/entry.h"
#include "host/embedding.h"
#include "platform/com.h"

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

} // namespace fuzz
