// The benchmarks' server.
#include "bench/server.h"

#include "classmodel/instance_record.h"
#include "entry/entry.h"
#include "host/object_array.h"

namespace axlink2::bench {

const kit::ClassDefinition& Server::definition() {
    static const auto made =
        kit::ClassBuilder<Server>("Server", kit::guid("5D1D8A51-7B0E-4D8B-8E3B-1C0C3A9EB001"),
                                  kit::guid("5D1D8A51-7B0E-4D8B-8E3B-1C0C3A9EB002"))
            .method("Add", &Server::sum, {"a", "b"})
            .method("Concat", &Server::joined, {"a", "b"})
            .property("Width", &Server::currentWidth, &Server::setWidth)
            .build();
    return *made;
}

platform::OleString Server::joined(platform::OleView a, platform::OleView b) {
    platform::OleString text(a);
    return text += b;
}

harray::unique_array newServerObject() {
    static const auto registration = [] {
        kit::registerProgId("Bench.Server", Server::definition().parts().coclass.clsid);
        return kit::registerInProcess<Server>();
    }();
    const harray::unique_array progId(hxCreateString("Bench.Server"));
    const hxArray* inputs[] = {progId.get()};
    harray::unique_array made;
    COM2::actxserver(1, &made, 1, inputs);
    return made;
}

hxArray* serverObject() {
    static const harray::unique_array object = newServerObject();
    return object.get();
}

IDispatch* bareServer() {
    static IDispatch* const server = recordOf(hoGetArrayElement(serverObject(), 0))->dispatch;
    return server;
}

} // namespace axlink2::bench
