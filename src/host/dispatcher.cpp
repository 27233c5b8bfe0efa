// Finding what a name and its inputs stand for.
#include "host/dispatcher.h"

#include "host/functions.h"
#include "host/host_messages.h"
#include "host/live_class.h"
#include "host/object_array.h"

namespace {

// The public face of constructors: "COM.Sample_Server_1" written as a function.
Hfunction_handle* findConstructor(hos::id symbol) {
    velmar::LiveClass* owner = velmar::findLiveClass(symbol);
    return owner ? &owner->constructor() : nullptr;
}

} // namespace

Hdispatcher& Hdispatcher::getDispatcher() {
    static Hdispatcher dispatcher;
    return dispatcher;
}

const Hfunction_scope* Hdispatcher::GetCurrentlyExecutingFunctionScope() const { return nullptr; }

hos::id Hdispatcher::symbol(const char* name) const {
    return hos::internal::makeInterned(name ? name : "");
}

Hfunction_handle* Hdispatcher::lookup(const Hfunction_scope*, hos::id symbol, int inputCount,
                                      const hxArray* const* inputs) {
    for (int i = 0; i < inputCount; ++i) {
        if (!hoIsHOS(inputs[i])) continue;
        velmar::LiveClass* owner = velmar::classOfArray(inputs[i]);
        if (Hfunction_handle* members = owner ? owner->methods(symbol) : nullptr) return members;
        break;
    }
    if (Hfunction_handle* function = velmar::findFunction(symbol)) return function;
    if (Hfunction_handle* constructor = findConstructor(symbol)) return constructor;
    velmar::fail(velmar::keys::UndefinedFunction, symbol.str());
}
