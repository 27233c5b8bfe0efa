// Classes by name, and the three steps that make an object.
#include "classmodel/object_creation.h"

#include "classmodel/class_description.h"
#include "comruntime/interned.h"
#include "host/object_array.h"

namespace axlink2 {

hos::HOSClass* findClass(const char* namespaceName, const std::string& className) {
    hos::HOSInterfacePtr handle;
    hos::HOSPackage::getNamespace(internedId(namespaceName))->findClass(&handle, className, 0);
    return hos::hosiToClass(handle);
}

NewObject makeObject(hos::HOSClass* owner) {
    NewObject made{owner, {}, nullptr};
    owner->newInstance(&made.object);
    owner->prepareInstance(made.object);
    owner->completeInstance(made.object);
    made.record = recordOf(made.object);
    return made;
}

NewObject makeObjectFrom(hos::HOSClass* owner, IDispatch* server) {
    struct Lend {
        COMBaseClassInfo* info;
        ~Lend() { info->server = nullptr; }
    } const lend{static_cast<COMBaseClassInfo*>(owner->getClassInfo())};
    lend.info->server = server;
    return makeObject(owner);
}

hos::HOSClass* addClass(const char* namespaceName, std::unique_ptr<COMBaseClassInfo> info) {
    const std::string className = info->className;
    hos::HOSPackage::getNamespace(internedId(namespaceName))->addClass(info.release(), 0, 2);
    return findClass(namespaceName, className);
}

harray::unique_array objectArray(const NewObject& made) {
    hos::id classId;
    made.owner->getID(&classId);
    auto array = harray::from_velmar(hoCreateHOSMatrix(1, 1, classId));
    hoSetArrayElement(array.get(), 0, made.object);
    return array;
}

} // namespace axlink2
