// Member calls of Scripting.Dictionary, which comes with Windows, beside its bare Invoke with known
// DISPIDs.
#include "bench/cases.h"
#include "classmodel/instance_record.h"
#include "entry/entry.h"
#include "host/dispatcher.h"
#include "host/object_array.h"
#include "platform/holders.h"

#include <algorithm>
#include <initializer_list>

namespace axlink2::bench {
namespace {

constexpr DISPID itemDispid = 0;
constexpr DISPID countDispid = 2;

// The first output of a method, the caller's; null without one.
hxArray* call(const char* name, int outputCount, std::initializer_list<const hxArray*> inputs) {
    Hdispatcher& dispatcher = Hdispatcher::getDispatcher();
    const hxArray* given[3];
    std::copy(inputs.begin(), inputs.end(), given);
    const int count = static_cast<int>(inputs.size());
    hxArray* output = nullptr;
    dispatcher
        .lookup(dispatcher.GetCurrentlyExecutingFunctionScope(), dispatcher.symbol(name), count,
                given)
        ->call(outputCount, &output, count, given);
    return output;
}

// Holds the number 1 under "k"; alive to the end of the program.
hxArray* dictionary() {
    static const harray::unique_array object = [] {
        const harray::unique_array progId(hxCreateString("Scripting.Dictionary"));
        const hxArray* inputs[] = {progId.get()};
        harray::unique_array made;
        COM2::actxserver(1, &made, 1, inputs);
        const harray::unique_array key(hxCreateString("k"));
        const harray::unique_array one(hxCreateDoubleScalar(1));
        harray::destroyArray(call("Add", 0, {made.get(), key.get(), one.get()}));
        return made;
    }();
    return object.get();
}

void rawGet(DISPID dispid, DISPPARAMS params) {
    static IDispatch* const server = recordOf(hoGetArrayElement(dictionary(), 0))->dispatch;
    platform::ScopedVariant result;
    server->Invoke(dispid, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &params,
                   result.put(), nullptr, nullptr);
}

void rawItem(std::size_t count) {
    for (; count > 0; --count) {
        platform::ScopedVariant key;
        key->vt = VT_BSTR;
        key->bstrVal = SysAllocString(OLESTR("k"));
        rawGet(itemDispid, {key.inOut(), nullptr, 1, 0});
    }
}

void rawCount(std::size_t count) {
    for (; count > 0; --count)
        rawGet(countDispid, {});
}

// What the language does for `d.Item('k')`.
void dispatchedItem(std::size_t count) {
    static const harray::unique_array key(hxCreateString("k"));
    for (; count > 0; --count)
        harray::destroyArray(call("Item", 1, {dictionary(), key.get()}));
}

// And for `d.Count`.
void dispatchedCount(std::size_t count) {
    for (; count > 0; --count)
        harray::destroyArray(hxGetPropertyShared(dictionary(), 0, "Count"));
}

} // namespace

std::vector<Case> dictionaryCases() {
    constexpr std::size_t batch = 1000;
    return {
        {"Dictionary, Item('k')", rawItem, dispatchedItem, 6, batch},
        {"Dictionary, Count", rawCount, dispatchedCount, 6, batch},
    };
}

} // namespace axlink2::bench
