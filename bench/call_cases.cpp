// Member calls, property reads and writes.
#include "bench/cases.h"
#include "bench/server.h"
#include "comruntime/interned.h"
#include "host/class.h"
#include "host/dispatcher.h"
#include "host/object_array.h"
#include "platform/holders.h"

namespace axlink2::bench {
namespace {

using hos::HOSValue;

VARIANT real(double value) {
    VARIANT v{};
    v.vt = VT_R8;
    v.dblVal = value;
    return v;
}

void invoke(DISPID dispid, WORD flags, DISPPARAMS params, VARIANT* result) {
    EXCEPINFO excepInfo{};
    UINT argumentError = 0;
    bareServer()->Invoke(dispid, IID_NULL, LOCALE_USER_DEFAULT, flags, &params, result, &excepInfo,
                         &argumentError);
}

void rawAdd(std::size_t count) {
    for (; count > 0; --count) {
        VARIANT arguments[] = {real(2), real(1)};
        VARIANT result{};
        invoke(Server::add, DISPATCH_METHOD, {arguments, nullptr, 2, 0}, &result);
        VariantClear(&result);
    }
}

hos::HOSMethodInfo* method(const char* name) {
    hos::HOSIterator found;
    hoGetArrayElement(serverObject(), 0)->getClass()->findMethods(&found, internedId(name));
    return hos::hosiToMethod(found.nextElement());
}

void memberAdd(std::size_t count) {
    static hos::HOSMethodInfo* const add = method("Add");
    HOSValue inputs[] = {HOSValue::ofPointer(serverObject()), HOSValue::ofDouble(1),
                         HOSValue::ofDouble(2)};
    for (; count > 0; --count) {
        std::uint32_t outputs = 1;
        HOSValue output;
        add->invoke(nullptr, &outputs, &output, 3, inputs);
    }
}

// What the language does for `h.Name(a, b)`: look-up, choice, arrays in, array out.
void dispatched(std::size_t count, const char* name, const hxArray* a, const hxArray* b) {
    Hdispatcher& dispatcher = Hdispatcher::getDispatcher();
    const hos::id symbol = dispatcher.symbol(name);
    const hxArray* inputs[] = {serverObject(), a, b};
    for (; count > 0; --count) {
        hxArray* output = nullptr;
        dispatcher.lookup(dispatcher.GetCurrentlyExecutingFunctionScope(), symbol, 3, inputs)
            ->call(1, &output, 3, inputs);
        harray::destroyArray(output);
    }
}

void dispatchedAdd(std::size_t count) {
    static const harray::unique_array a(hxCreateDoubleScalar(1));
    static const harray::unique_array b(hxCreateDoubleScalar(2));
    dispatched(count, "Add", a.get(), b.get());
}

void rawConcat(std::size_t count) {
    for (; count > 0; --count) {
        platform::ScopedVariant a;
        platform::ScopedVariant b;
        a->vt = b->vt = VT_BSTR;
        a->bstrVal = SysAllocString(OLESTR("Auto"));
        b->bstrVal = SysAllocString(OLESTR("mation"));
        VARIANT arguments[] = {b.get(), a.get()};
        platform::ScopedVariant result;
        invoke(Server::concat, DISPATCH_METHOD, {arguments, nullptr, 2, 0}, result.put());
    }
}

void dispatchedConcat(std::size_t count) {
    static const harray::unique_array a(hxCreateString("Auto"));
    static const harray::unique_array b(hxCreateString("mation"));
    dispatched(count, "Concat", a.get(), b.get());
}

hos::HOSPropInfo* widthProperty() {
    hos::HOSInterfacePtr found;
    hoGetArrayElement(serverObject(), 0)
        ->getClass()
        ->findClassProperty(&found, internedId("Width"));
    return hos::hosiToProp(found);
}

void rawRead(std::size_t count) {
    for (; count > 0; --count) {
        VARIANT result{};
        invoke(Server::width, DISPATCH_PROPERTYGET, {}, &result);
        VariantClear(&result);
    }
}

void memberRead(std::size_t count) {
    static hos::HOSPropInfo* const width = widthProperty();
    const hos::HOSInterfacePtr object = hoGetArrayElement(serverObject(), 0);
    for (; count > 0; --count) {
        HOSValue value;
        width->getValue(&value, object);
    }
}

void dispatchedRead(std::size_t count) {
    for (; count > 0; --count)
        harray::destroyArray(hxGetPropertyShared(serverObject(), 0, "Width"));
}

void rawWrite(std::size_t count) {
    for (; count > 0; --count) {
        VARIANT value = real(3);
        DISPID named = DISPID_PROPERTYPUT;
        invoke(Server::width, DISPATCH_PROPERTYPUT, {&value, &named, 1, 1}, nullptr);
    }
}

void memberWrite(std::size_t count) {
    static hos::HOSPropInfo* const width = widthProperty();
    const hos::HOSInterfacePtr object = hoGetArrayElement(serverObject(), 0);
    for (; count > 0; --count)
        width->setValue(object, HOSValue::ofDouble(3));
}

void dispatchedWrite(std::size_t count) {
    static const harray::unique_array value(hxCreateDoubleScalar(3));
    for (; count > 0; --count)
        hxSetProperty(serverObject(), 0, "Width", value.get());
}

} // namespace

std::vector<Case> callCases() {
    constexpr std::size_t batch = 1000;
    return {
        {"call, member", rawAdd, memberAdd, 2, batch},
        {"call, from the language", rawAdd, dispatchedAdd, 6, batch},
        {"call with text, from the language", rawConcat, dispatchedConcat, 6, batch},
        {"property read, member", rawRead, memberRead, 2, batch},
        {"property read, from the language", rawRead, dispatchedRead, 6, batch},
        {"property write, member", rawWrite, memberWrite, 2, batch},
        {"property write, from the language", rawWrite, dispatchedWrite, 6, batch},
    };
}

} // namespace axlink2::bench
