// Functions and members by name, for a program that embeds the host.
#include "host/embedding.h"

#include "host/functions.h"
#include "host/host_messages.h"
#include "host/live_object.h"
#include "host/member_access.h"
#include "host/object_array.h"

#include <algorithm>

namespace velmar {
namespace {

Arrays callHandle(Hfunction_handle& handle, int outputCount, Inputs inputs) {
    boost::container::small_vector<hxArray*, 2> results(
        static_cast<std::size_t>(std::max(outputCount, 1)));
    Arrays arrays(results.size());
    handle.call(outputCount, results.data(), static_cast<int>(inputs.size()), inputs.data());
    for (std::size_t i = 0; i < results.size(); ++i)
        arrays[i].reset(results[i]);
    if (outputCount <= 0 && !arrays.front()) arrays.clear();
    return arrays;
}

LiveClass& classOf(const hxArray* object, hos::id name) {
    LiveClass* owner = classOfArray(object);
    if (!owner) fail(keys::NotAnObject, name.str(), std::string(hxGetClassName(object)));
    return *owner;
}

// The one object whose property is meant.
hos::HOSInterface& oneObject(const hxArray* object, hos::id name) {
    classOf(object, name);
    if (object->count != 1)
        fail(keys::NotOneObject, name.str(), static_cast<std::int64_t>(object->count));
    return requireAlive(object->elements<harray::detail::ObjectElement>()[0]);
}

} // namespace

bool hasPackage(const std::string& name) {
    return hos::HOSPackage::getNamespace(hos::internal::findInterned(name.c_str()));
}

bool hasClass(const std::string& name) {
    return findLiveClass(hos::internal::findInterned(name.c_str()));
}

Arrays call(const std::string& name, int outputCount, Inputs inputs) {
    Hdispatcher& dispatcher = Hdispatcher::getDispatcher();
    const hos::id symbol = hos::internal::makeInterned(std::string(name));
    return callHandle(*dispatcher.lookup(dispatcher.GetCurrentlyExecutingFunctionScope(), symbol,
                                         static_cast<int>(inputs.size()), inputs.data()),
                      outputCount, inputs);
}

Arrays callMember(const hxArray* object, MemberName name, int outputCount, Inputs inputs) {
    if (MethodGroup* methods = classOf(object, name.id).methods(name.id)) {
        boost::container::small_vector<const hxArray*, 8> all{object};
        all.insert(all.end(), inputs.begin(), inputs.end());
        return callHandle(*methods, outputCount, all);
    }
    harray::unique_array value = readProperty(oneObject(object, name.id), name.id, name.id.c_str());
    if (!inputs.empty()) fail(keys::PropertyInputs, name.id.str());
    if (outputCount > 1) fail(keys::TooManyOutputs, name.id.str(), std::int64_t{1});
    Arrays arrays;
    arrays.push_back(std::move(value));
    return arrays;
}

bool hasMethod(const hxArray* object, MemberName name) {
    LiveClass* owner = classOfArray(object);
    return owner && owner->methods(name.id);
}

bool hasProperty(const hxArray* object, MemberName name) {
    LiveClass* owner = classOfArray(object);
    if (!owner) return false;
    if (owner->property(name.id)) return true;
    hos::HOSInterfacePtr found;
    if (hos::HOSInterfacePtr first = hoGetArrayElement(object, 0))
        first->findDynamicProperty(&found, name.id);
    return static_cast<bool>(found);
}

void setMember(hxArray* object, MemberName name, const hxArray* value) {
    writeProperty(oneObject(object, name.id), name.id, name.id.c_str(), value);
}

} // namespace velmar
