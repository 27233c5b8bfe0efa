// How a member reports failure: thrown inside the member, turned into results by Invoke.
#pragma once

#include "platform/answer.h"
#include "platform/com.h"
#include "platform/text.h"

#include <optional>

namespace kit {

// The server's own error: Invoke answers DISP_E_EXCEPTION and fills the EXCEPINFO. A text that is
// absent stays null.
struct ServerError {
    std::optional<platform::OleString> source = {};
    std::optional<platform::OleString> description = {};
    std::optional<platform::OleString> helpFile = {};
    DWORD helpContext = 0;
    WORD wCode = 0;
    SCODE scode = 0;

    // Raises std::bad_alloc. The texts become the property of whoever owns `info`.
    void fill(EXCEPINFO& info) const;
};

// A plain result that Invoke answers, a success code too; with an argument, its index in rgvarg is
// reported.
struct ComFailure {
    HRESULT result = E_FAIL;
    std::optional<UINT> argument = std::nullopt;
};

// Raises ComFailure for a negative result.
inline void check(HRESULT result) {
    if (FAILED(result)) throw ComFailure{result};
}

// What `call` answers, or the result of the ComFailure or the standard exception that it raises.
template <class Call>
HRESULT answer(Call&& call) {
    return platform::answer([&] {
        try {
            return call();
        } catch (const ComFailure& failure) {
            return failure.result;
        }
    });
}

} // namespace kit
