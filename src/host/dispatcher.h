// Calling functions and members of the host by name.
#pragma once

#include "host/array.h"
#include "host/interned.h"

#include <cstdint>

// What `lookup` gives: the function, or the members of that name, that a call then goes to.
class Hfunction_handle {
  public:
    virtual ~Hfunction_handle() = default;
    // Calls with `inputCount` inputs, which stay the caller's. `outputs` has room for
    // max(outputCount, 1) entries, null before the call; afterwards the caller owns them.
    virtual void call(int outputCount, hxArray** outputs, int inputCount,
                      const hxArray* const* inputs) = 0;
};

class Hfunction_scope;

class Hdispatcher {
  public:
    static Hdispatcher& getDispatcher();

    const Hfunction_scope* GetCurrentlyExecutingFunctionScope() const;
    hos::id symbol(const char* name) const;
    // Members of the first object array among the inputs come before functions. Raises when
    // nothing has that name. The handle is the dispatcher's and is good until the next look-up of
    // the same name; the inputs that are given to its call must be of the same classes.
    Hfunction_handle* lookup(const Hfunction_scope* scope, hos::id symbol, int inputCount,
                             const hxArray* const* inputs);
};
