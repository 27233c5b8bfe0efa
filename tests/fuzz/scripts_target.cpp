// Programs of the shell's language, with a server to drive: each ends in time, with a result or a
// documented error.
#include "entry/entry.h"
#include "fuzz/fuzz_target.h"
#include "fuzz/step_limit.h"
#include "host/embedding.h"
#include "servers/kit/kit.h"
#include "shell/function_handles.h"
#include "shell/functions.h"
#include "shell/interpreter.h"
#include "shell/parser.h"

using namespace fuzz;

namespace {

class Gadget final : public kit::DispatchObject {
  public:
    Gadget() : DispatchObject(definition()) {}
    static const kit::ClassDefinition& definition() {
        static const auto made = [] {
            kit::ClassBuilder<Gadget> builder("Gadget",
                                              kit::guid("5A7A3C10-7C0B-4C55-8B85-2C7F9E0AB001"),
                                              kit::guid("5A7A3C10-7C0B-4C55-8B85-2C7F9E0AB002"));
            builder.method("Echo", &Gadget::echo, {"value"});
            builder.method("Part", &Gadget::part);
            builder.method("Fire", &Gadget::fireMoved, {"count"});
            builder.method("Fail", &Gadget::fail);
            builder.property("Name", &Gadget::name, &Gadget::setName);
            builder.property("Size", &Gadget::size, &Gadget::setSize);
            builder.source("DGadgetEvents", kit::guid("5A7A3C10-7C0B-4C55-8B85-2C7F9E0AB003"));
            builder.event("Moved", {{"x", VT_R8}});
            return builder.build();
        }();
        return *made;
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
        kit::registerProgId("Fuzz.Gadget", Gadget::definition().parts().coclass.clsid);
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
