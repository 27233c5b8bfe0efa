// Errors as values of a program.
#include "shell/errors.h"

namespace velsh {

Value errorStruct(const velmar::ErrorText& error) {
    Value result(hxCreateStructMatrix(1, 1, 0, nullptr));
    hxSetField(result.writable(), 0, "message", charText(error.text).take().release());
    hxSetField(result.writable(), 0, "identifier", charText(error.identifier).take().release());
    return result;
}

void rethrowStruct(const hxArray* error) {
    if (hxGetClassID(error) != hxSTRUCT_CLASS || countOf(error) != 1)
        raiseWrongType("rethrow takes what 'catch' gave", error);
    const hxArray* message = hxGetField(error, 0, "message");
    const hxArray* identifier = hxGetField(error, 0, "identifier");
    if (!message || !identifier)
        raise("wrongtype", "rethrow needs the fields \"message\" and \"identifier\".");
    velmar::raiseError(narrowTextOf(identifier, "The identifier"),
                       narrowTextOf(message, "The message"));
}

} // namespace velsh
