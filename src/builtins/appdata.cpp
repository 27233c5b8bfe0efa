// A store of named values on one object.
#include "builtins/appdata.h"

#include "builtins/call_support.h"
#include "comruntime/interned.h"
#include "host/exception.h"
#include "host/message_ids.h"

namespace axlink2 {
namespace {

using harray::unique_array;

hos::HOSPropInfo* findStore(hos::HOSInterface& object) {
    hos::HOSInterfacePtr found;
    return hos::hosiToProp(*object.findDynamicProperty(&found, internedId("AppData")));
}

hos::HOSPropInfo* makeStore(hos::HOSInterface& object) {
    object.addDynamicProperty(hos::HOSGenericProp::createNewDynamicProp(
        internedId("AppData"), internedId("any"), hos::id()));
    hos::HOSPropInfo* property = findStore(object);
    property->setValue(&object, hos::HOSValue::ofPointer(createStruct({}).get()));
    return property;
}

// The application data of a live object: a copy of what the property holds, which changes put back.
class AppData {
  public:
    // Raises "VELMAR:COM:InvalidAppData".
    explicit AppData(hos::HOSInterface& object) : object_(object), property_(findStore(object)) {
        if (!property_) property_ = makeStore(object);
        hos::HOSValue value;
        property_->getValue(&value, &object);
        const hxClassID classId = value.isNull() ? hxUNKNOWN_CLASS : hxGetClassID(value.array());
        if ((classId != hxSTRUCT_CLASS && classId != hxOBJECT_CLASS) ||
            hxGetNumberOfElements(value.array()) != 1)
            hmsgcore::raise(VELMAR::COM::InvalidAppData());
        values_.reset(hxCreateSharedDataCopy(value.array()));
    }

    bool has(const char* name) const { return hxGetFieldNumber(values_.get(), name) >= 0; }
    unique_array copyOfAll() const { return unique_array(hxCreateSharedDataCopy(values_.get())); }
    unique_array copyOf(const char* name) const {
        return unique_array(hxCreateSharedDataCopy(hxGetField(values_.get(), 0, name)));
    }
    void set(const char* name, const hxArray* value) {
        hxSetField(values_.get(), 0, name, hxCreateSharedDataCopy(value));
        store();
    }
    void remove(const char* name) {
        hxSetField(values_.get(), 0, name, nullptr);
        hxRemoveField(values_.get(), hxGetFieldNumber(values_.get(), name));
        store();
    }

  private:
    void store() { property_->setValue(&object_, hos::HOSValue::ofPointer(values_.get())); }

    hos::HOSInterface& object_;
    hos::HOSPropInfo* property_;
    unique_array values_;
};

const char* nameIn(const hos::HOSValue* inputs) { return inputs[1].pointer<const char>(); }

} // namespace

void COMSetappdataMethodInfo::invoke(const hos::HOSClient*, std::uint32_t*, hos::HOSValue*,
                                     std::int32_t, hos::HOSValue* inputs) {
    const hos::HOSInterfacePtr object = liveObject(inputs);
    if (object) AppData(*object).set(nameIn(inputs), inputs[2].array());
}

void COMGetappdataMethodInfo::invoke(const hos::HOSClient*, std::uint32_t* outputCount,
                                     hos::HOSValue* outputs, std::int32_t inputCount,
                                     hos::HOSValue* inputs) {
    const hos::HOSInterfacePtr object = liveObject(inputs);
    if (!object) return;
    const AppData data(*object);
    giveOutput(inputCount == 1 ? data.copyOfAll() : data.copyOf(nameIn(inputs)), outputCount,
               outputs);
}

void COMRmappdataMethodInfo::invoke(const hos::HOSClient*, std::uint32_t*, hos::HOSValue*,
                                    std::int32_t, hos::HOSValue* inputs) {
    const hos::HOSInterfacePtr object = liveObject(inputs);
    if (!object) return;
    AppData data(*object);
    if (!data.has(nameIn(inputs)))
        hmsgcore::raise(VELMAR::HostGraphics::Appdata::InvalidNameAppdata());
    data.remove(nameIn(inputs));
}

void COMIsappdataMethodInfo::invoke(const hos::HOSClient*, std::uint32_t* outputCount,
                                    hos::HOSValue* outputs, std::int32_t, hos::HOSValue* inputs) {
    const hos::HOSInterfacePtr object = liveObject(inputs);
    if (object) giveOutput(AppData(*object).has(nameIn(inputs)), outputCount, outputs);
}

} // namespace axlink2
