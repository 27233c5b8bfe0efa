// Server classes of tests, and the plainest ones.
#pragma once

#include "servers/kit/kit.h"

#include <cstring>
#include <functional>
#include <string>

namespace axlink2::test {

// An identifier made from a text.
inline GUID guidOf(const std::string& text) {
    const std::size_t parts[] = {std::hash<std::string>()(text), text.size()};
    GUID guid;
    static_assert(sizeof guid == sizeof parts);
    std::memcpy(&guid, parts, sizeof guid);
    return guid;
}

// The base of a server class that is called `Class::className` and has the members that
// `Class::declare` adds.
template <class Class>
class Served : public kit::DispatchObject {
  public:
    using Builder = kit::ClassBuilder<Class>;

    static const kit::ClassDefinition& definition() {
        static const auto made = [] {
            const std::string name = Class::className;
            Builder builder(name, guidOf(name), guidOf("I" + name));
            Class::declare(builder);
            return builder.build();
        }();
        return *made;
    }
    static const CLSID& clsid() { return definition().parts().coclass.clsid; }
    static void declare(Builder&) {}

  protected:
    Served() : DispatchObject(definition()) {}
};

// A server without members.
class PlainServer : public Served<PlainServer> {
  public:
    static constexpr const char* className = "Plain";
};

// One that has no IDispatch, whatever its C++ type says.
class ClosedServer final : public PlainServer {
  public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (iid != IID_IDispatch) return PlainServer::QueryInterface(iid, object);
        *object = nullptr;
        return E_NOINTERFACE;
    }
};

// One that has a method and tells nothing of it.
class UntypedServer final : public Served<UntypedServer> {
  public:
    static constexpr const char* className = "Untyped";
    static void declare(Builder& builder) {
        builder.method("Twice", &UntypedServer::twice, {"x"}).withoutTypeInfo();
    }
    double twice(double x) { return 2 * x; }
};

} // namespace axlink2::test
