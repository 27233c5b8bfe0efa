// The sample server as clients see it.
#include "servers/sample/identities.h"
#include "servers/sample/server.h"

namespace sample {

const kit::Library& library() {
    static const kit::Library made("SampleLib", libraryId,
                                   {&Server::definition, &Child::definition, &Items::definition});
    return made;
}

const kit::ClassDefinition& Server::definition() {
    static const auto made = [] {
        auto base = kit::ClassBuilder<Server>::interface_("ISampleBase", baseInterface);
        base.property("BaseName", &Server::baseName, &Server::setBaseName)
            .method("BaseMethod", &Server::baseMethod, {"value"});

        kit::ClassBuilder<Server> builder("Server", serverClass, serverInterface, "ISampleServer");
        builder.inherits(base).enumeration<Color>(
            "Color", {{"red", 0}, {"green", 1}, {"blue", 2}, {"crimson", -1}});
        declareMethods(builder);
        declareFailures(builder);
        declareProperties(builder);
        Echoes::declare(builder);
        Values::declare(builder);
        Events::declare(builder);
        Events::declareSource(builder);
        return builder.build(&library());
    }();
    return *made;
}

void Server::declareMethods(kit::ClassBuilder<Server>& builder) {
    builder.method("Compute", &Server::compute, {"x"})
        .method("Add", &Server::add, {"a", "b"})
        .method("Divide", &Server::divide, {"dividend", "divisor", "quotient", "remainder"})
        .method("Concat", &Server::concat, {"a", "b"})
        .method("Greet", &Server::greet, {"name"})
        .method("Scale", &Server::scale, {"value", "factor"})
        .method("Swap", &Server::swap, {"a", "b"})
        .method("MinMax", &Server::minMax, {"a", "b", "c", "min", "max"})
        .method("Next", &Server::next, {"color"})
        .method("Sum", &Server::sum, {"values"})
        .method("MakeVector", &Server::makeVector, {"count"})
        .method("Reset", &Server::reset)
        .method("OutI4", &Server::outI4, {"value"})
        .method("OutBSTR", &Server::outBSTR, {"value"})
        .method("OutBool", &Server::outBool, {"value"})
        .method("OutVariant", &Server::outVariant, {"value"})
        .method("OutDispatch", &Server::outDispatch, {"value"})
        .method("NewChild", &Server::newChild, {"name"})
        .method("Self", &Server::self)
        .method("CountOf", &Server::countOf, {"child"})
        .method("RegisterActive", &Server::registerActive)
        .method("RevokeActive", &Server::revokeActive);
}

void Server::declareFailures(kit::ClassBuilder<Server>& builder) {
    builder.method("Fail", &Server::fail, {"hresult"})
        .method("Raise", &Server::raise, {"code"})
        .method("FailQuietly", &Server::failQuietly)
        .method("Crash", &Server::crash)
        .method("CrashDivide", &Server::crashDivide)
        .method("CrashCall", &Server::crashCall)
        .method("CrashThrow", &Server::crashThrow)
        .method("HiddenMethod", &Server::hiddenMethod)
        .hidden()
        .method("RestrictedMethod", &Server::restrictedMethod)
        .restricted()
        .method("_Underscore", &Server::underscore)
        .method("TakePointer", &Server::takePointer, {"address"})
        .declareParameter(0, VT_INT_PTR);
}

void Server::declareProperties(kit::ClassBuilder<Server>& builder) {
    builder.property("Name", &Server::name, &Server::setName)
        .property("Visible", &Server::visible, &Server::setVisible)
        .property("Width", &Server::width, &Server::setWidth)
        .property("Height", &Server::height, &Server::setHeight)
        .property("Color", &Server::color, &Server::setColor)
        .property("Count", &Server::count)
        .property("Child", &Server::child)
        .putRef("Child", &Server::setChild)
        .put("WriteOnly", &Server::setWriteOnly)
        .property("Created", &Server::created)
        .property("Price", &Server::price, &Server::setPrice)
        .property("Item", &Server::item, &Server::setItem, {"index"})
        .property("Level", &Server::level, {"channel"})
        .variable("Tag", &Server::tag_)
        .variable("Kind", &Server::kind_)
        .readOnly();
}

} // namespace sample
