// Class names in the namespace COM, from ProgIDs and back.
#pragma once

#include <string>

namespace axlink2 {

// "Sample.Server.1" is the class "Sample_Server_1".
std::string encodeClassName(const std::string& progId);

// The ProgID of a class name. Gives back what `encodeClassName` was given, unless two of the
// characters `.`, `-`, `_`, blank and `&` stood side by side.
std::string decodeClassName(const std::string& className);

} // namespace axlink2
