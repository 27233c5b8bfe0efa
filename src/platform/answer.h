// The way out of a COM method: no exception crosses it.
#pragma once

#include "platform/com.h"

#include <exception>
#include <new>

namespace platform {

// What `call` answers; E_OUTOFMEMORY or E_UNEXPECTED when it raises a standard exception.
template <class Call>
HRESULT answer(Call&& call) {
    try {
        return call();
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (const std::exception&) {
        return E_UNEXPECTED;
    }
}

} // namespace platform
