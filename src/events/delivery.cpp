// Building the structure of an event.
#include "events/delivery.h"

#include "classmodel/class_description.h"
#include "comruntime/interned.h"
#include "conversion/variant_to_host.h"
#include "events/event_data.h"
#include "host/object_array.h"
#include "host/text.h"
#include "platform/guarded_call.h"
#include "platform/holders.h"

namespace axlink2 {
namespace {

using harray::unique_array;

// Named arguments come in the order of declaration, others the other way round. Null for one that
// wasn't given.
const VARIANT* argumentAt(const DISPPARAMS* params, std::size_t position) {
    if (!params || !params->rgvarg || position >= params->cArgs) return nullptr;
    return params->rgvarg + (params->cNamedArgs ? position : params->cArgs - 1 - position);
}

// What stands in `rgvarg` is the server's, and other sinks get it, too.
unique_array argumentToHost(const VARIANT& argument) {
    hxArray* value = nullptr;
    try {
        if (isChangedByConversion(argument)) {
            // A plain copy will do: references and values that turn into text own nothing.
            auto copy = platform::ScopedVariant::adopt(argument);
            variantToHost(copy.inOut(), &value, {});
        } else {
            VARIANT view = argument;
            variantToHost(&view, &value, {});
        }
    } catch (...) {
        fallBackToNaN(&value);
    }
    return unique_array(value);
}

unique_array objectArrayOf(const hos::HOSInterfacePtr& object) {
    hos::id classId;
    object->getClass()->getID(&classId);
    unique_array array(hoCreateHOSMatrix(1, 1, classId));
    hoSetArrayElement(array.get(), 0, object);
    return array;
}

unique_array structureOf(const COMEventDescriptor& event, const hos::HOSInterfacePtr& source,
                         DISPID dispid, const DISPPARAMS* params) {
    constexpr std::size_t extents[] = {1, 1};
    unique_array data(harray::detail::do_create_struct(
        2, extents, static_cast<int>(event.fieldNames.size()), event.fieldNames.data()));
    const auto set = [&](EventField field, std::size_t offset, unique_array value) {
        hxSetFieldByNumber(data.get(), 0, static_cast<int>(field) + static_cast<int>(offset),
                           value.release());
    };
    set(EventField::Type, 0, hoststring::createStringArray(hsys::i18n::to_ustring(event.name)));
    set(EventField::Source, 0, objectArrayOf(source));
    set(EventField::EventID, 0, unique_array(hxCreateDoubleScalar(dispid)));
    for (std::size_t i = 0; i < event.converters.size(); ++i)
        if (const VARIANT* argument = argumentAt(params, i))
            set(EventField::FirstParameter, i, argumentToHost(*argument));
    return data;
}

} // namespace

void deliverEvent(const hos::HOSInterfacePtr& source, DISPID dispid, const DISPPARAMS* params) {
    const hos::HOSInterfacePtr object(source, hos::HOSReferenceType::Strong);
    if (!object) return;
    const auto* info = static_cast<COMBaseClassInfo*>(object->getClass()->getClassInfo());
    const COMEventDescriptor& event = *info->eventsByDispid.at(dispid);
    const hos::id name = internedId(event.name);
    const unique_array data = structureOf(event, object, dispid, params);
    COMEventData eventData(name, object, data.get());
    const platform::UnguardedRegion hostRuns; // inside a guarded call of the server
    object->notifyListeners(hos::HOSGetPublicClient(), name, &eventData);
}

} // namespace axlink2
