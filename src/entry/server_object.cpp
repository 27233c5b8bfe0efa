// Classes and objects of servers that run.
#include "entry/server_object.h"

#include "classmodel/class_description.h"
#include "classmodel/namespaces.h"
#include "classmodel/object_creation.h"

namespace axlink2 {

harray::unique_array serverObject(const std::string& className, ServerPtr<IDispatch> server) {
    hos::HOSClass* owner = findClass(comNamespace, className);
    if (!owner)
        owner =
            addClass(comNamespace, std::make_unique<COMCoclassClassInfo>(className, server.get()));
    return objectOf(owner, std::move(server));
}

harray::unique_array objectOf(hos::HOSClass* owner, ServerPtr<IDispatch> server) {
    const NewObject made = makeObjectFrom(owner, server.get());
    made.record->dispatch = server.detach();
    return objectArray(made);
}

} // namespace axlink2
