// A fixture that starts servers of the kit through the module and calls their members.
#pragma once

#include "classmodel/instance_record.h"
#include "comruntime/interned.h"
#include "entry/entry.h"
#include "host/class.h"
#include "host/embedding.h"
#include "host/object_array.h"
#include "support/alive_check.h"
#include "support/errors.h"
#include "support/registered_module.h"
#include "support/served.h"
#include "support/values.h"

#include <list>
#include <string>

namespace axlink2::test {

class ServerTest : public AliveCheck {
  protected:
    // A new object of the class of that ProgID, which `Server` serves from now on.
    template <class Server>
    Array start(const std::string& progId) {
        const CLSID& clsid = Server::definition().parts().coclass.clsid;
        kit::registerProgId(progId, clsid);
        registrations_.emplace_back(clsid, [] { return kit::createDispatch<Server>(); });
        return startRegistered(progId);
    }

    static Array startRegistered(const std::string& progId) {
        Array output;
        const Array name = text(progId);
        const hxArray* inputs[] = {name.get()};
        COM2::actxserver(1, &output, 1, inputs);
        return output;
    }

    static hos::HOSInterfacePtr handle(const Array& object) {
        return hoGetArrayElement(object.get(), 0);
    }
    static COMInstanceRecord& record(const Array& object) { return *recordOf(handle(object)); }
    static hos::HOSClass* classOf(const Array& object) { return handle(object)->getClass(); }
    static void destroy(const Array& object) { handle(object)->destroy(hos::HOSGetPublicClient()); }

    static hos::HOSMethodInfo* method(const Array& object, const char* name) {
        hos::HOSIterator methods;
        classOf(object)->findMethods(&methods, internedId(name));
        return hos::hosiToMethod(methods.nextElement());
    }

    // A program's call, as the language makes it.
    static velmar::Arrays call(const Array& object, const std::string& name, int outputs,
                               const std::vector<const hxArray*>& inputs = {}) {
        return velmar::callMember(object.get(), name, outputs, inputs);
    }

    static double number(const hxArray* array) { return hxGetScalar(array); }

  private:
    std::list<kit::ClassRegistration> registrations_;
};

// The names of the enumeration's elements, in order.
inline std::vector<std::string> namesOf(hos::Enumeration<hos::id>&& elements) {
    std::vector<std::string> names;
    while (elements.hasMoreElements())
        names.push_back(elements.nextElement().str());
    return names;
}

} // namespace axlink2::test
