// Class objects: IClassFactory, registration in the process, and the entry points of a server.
#pragma once

#include "servers/kit/dispatch_object.h"

#include <functional>
#include <span>
#include <string>

namespace kit {

using Maker = platform::ComPtr<IDispatch> (*)();

// One creatable class.
struct ServedClass {
    CLSID clsid;
    Maker make;
};

// A class object for a maker; its creator has the one reference.
platform::ComPtr<IClassFactory> makeClassFactory(std::function<platform::ComPtr<IDispatch>()> make);

// What a server's DllGetClassObject and DllCanUnloadNow answer.
HRESULT getClassObject(std::span<const ServedClass> classes, REFCLSID clsid, REFIID iid,
                       void** object);
HRESULT canUnloadNow();

// A class object registered in the process; revoked at the end.
class ClassRegistration {
  public:
    // The calling thread must be in an apartment. Raises ComFailure.
    ClassRegistration(const CLSID& clsid, std::function<platform::ComPtr<IDispatch>()> make);
    ClassRegistration(const ClassRegistration&) = delete;
    ~ClassRegistration();

  private:
    DWORD cookie_ = 0;
};

// Registers Class, made by its default constructor. Raises ComFailure.
template <class Class>
ClassRegistration registerInProcess() {
    return ClassRegistration(Class::definition().parts().coclass.clsid,
                             [] { return createDispatch<Class>(); });
}

// Brings a ProgID for the class into the registry, through a temporary .reg file. Raises
// std::runtime_error.
void registerProgId(const std::string& progId, const CLSID& clsid);

} // namespace kit
