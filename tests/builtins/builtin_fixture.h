// A fixture whose tests read like a program's calls: h.get('Name').
#pragma once

#include "builtins/gadget.h"
#include "support/server_fixture.h"

#include <string>
#include <vector>

namespace axlink2::test {

// An array on one line: 3, 'text', {a; b}(2x1), (Name='x' Width=3), <COM.Test_Gadget>, [](0x0).
std::string plain(const hxArray* array);

class BuiltinTest : public ServerTest {
  protected:
    // The first output of h.name(inputs...); null when there is none.
    template <class... Inputs>
    static Array ask(int outputs, const Array& h, const std::string& name,
                     const Inputs&... inputs) {
        auto results = call(h, name, outputs, {inputs.get()...});
        return results.empty() ? nullptr : std::move(results[0]);
    }
    template <class... Inputs>
    static std::string get(const Array& h, const Inputs&... inputs) {
        return plain(ask(1, h, "get", inputs...).get());
    }
    template <class... Inputs>
    static std::string errorIn(const Array& h, const std::string& name, const Inputs&... inputs) {
        return errorOf([&] { ask(0, h, name, inputs...); });
    }

    // A row of the objects of several arrays.
    static Array row(const std::vector<const Array*>& objects);
    static Array emptyArrayOf(const Array& h);
    static bool isDeleted(const Array& h) { return handle(h)->isDeleted(); }

    // What `action` prints, and the identifiers of its warnings.
    static std::string printed(const std::function<void()>& action);
    static std::vector<std::string> warnings(const std::function<void()>& action);

    // A call past the host's own checks; gives the number of outputs and the first one.
    static std::pair<std::uint32_t, Array> invokeDirectly(hos::HOSMethodInfo& method,
                                                          std::uint32_t outputs,
                                                          std::vector<hos::HOSValue> inputs);
};

class GadgetTest : public BuiltinTest {
  protected:
    Array h = start<Gadget>("Test.Gadget");
    kit::CallLog log;
};

inline const char* const unknownName = "VELMAR:COM:E2147614726";
inline const char* const ambiguous = "VELMAR:COM:AmbiguousPropertyException";
inline const char* const invalidHandle = "VELMAR:class:InvalidHandle";

} // namespace axlink2::test
