// Programs of the shell's language, with a server to drive: each ends in time, with a result or a
// documented error.
#include "entry/entry.h"
#include "fuzz/fuzz_target.h"
#include "fuzz/step_limit.h"
#include "host/embedding.h"
#include "shell/function_handles.h"
#include "shell/functions.h"
#include "shell/interpreter.h"
#include "shell/parser.h"
#include "support/served.h"

using namespace fuzz;

namespace {

class Gadget final : public axlink2::test::Served<Gadget> {
  public:
    static constexpr const char* className = "Gadget";
    static void declare(Builder& builder) {
        builder.method("Echo", &Gadget::echo, {"value"})
            .method("Part", &Gadget::part)
            .method("Fire", &Gadget::fireMoved, {"count"})
            .method("Fail", &Gadget::fail)
            .property("Name", &Gadget::name, &Gadget::setName)
            .property("Size", &Gadget::size, &Gadget::setSize)
            .source("DGadgetEvents", axlink2::test::guidOf("DGadgetEvents"))
            .event("Moved", {{"x", VT_R8}});
    }

    platform::ScopedVariant echo(const VARIANT& value) {
        platform::ScopedVariant copy;
        if (FAILED(VariantCopyInd(copy.inOut(), &value))) throw kit::ServerError{};
        return copy;
    }
    platform::ComPtr<IDispatch> part() { return kit::createDispatch<Gadget>(); }
    void fireMoved(LONG count) {
        for (LONG i = 0; i < count && i < 3; ++i)
            fire(1, 1.5);
    }
    void fail() { throw kit::ServerError{.description = OLESTR("No.")}; }
    platform::OleString name() const { return name_; }
    void setName(platform::OleView name) { name_ = name; }
    double size() const { return size_; }
    void setSize(double size) { size_ = size; }

  private:
    platform::OleString name_ = OLESTR("gadget");
    double size_ = 2;
};

void registerGadget() {
    static const bool ready = [] {
        kit::registerProgId("Fuzz.Gadget", Gadget::clsid());
        static const kit::ClassRegistration registration = kit::registerInProcess<Gadget>();
        velsh::defineFunctions();
        velmar::defineFunction("actxserver", COM2::actxserver);
        velsh::Value().get(); // which makes an array that stays
        return true;
    }();
    static_cast<void>(ready);
}

void runProgram(std::string_view source) {
    velsh::Block program;
    try {
        program = velsh::parse(source);
    } catch (const velsh::SyntaxError& error) {
        if (error.position.line < 1 || error.position.column < 1)
            fail("an error without its place");
        return;
    }
    velsh::Interpreter interpreter;
    attempt([&] {
        const StepLimit limit;
        interpreter.run(program);
    });
    velsh::removeAllListeners();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    prepare();
    registerGadget();
    const NothingLeft check;
    runProgram({reinterpret_cast<const char*>(data), size});
    return 0;
}
