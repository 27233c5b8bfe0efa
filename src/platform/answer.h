// The way out of a COM function or method: no exception crosses it.
#pragma once

#include "platform/com.h"

#include <exception>
#include <new>

namespace platform {

// What `call` answers; `noMemory` or E_UNEXPECTED when it raises a standard exception.
template <class Call>
HRESULT answer(Call&& call, HRESULT noMemory = E_OUTOFMEMORY) {
    try {
        return call();
    } catch (const std::bad_alloc&) {
        return noMemory;
    } catch (const std::exception&) {
        return E_UNEXPECTED;
    }
}

} // namespace platform
