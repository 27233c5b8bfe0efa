// Type descriptions as text, so that a test can say in one line what it expects.
#pragma once

#include "comruntime/type_description.h"

#include <string>

namespace axlink2::test {

// "method(1:vt5, 2:vt3&)->vt5 optional=1 required", parameters with their flags in hexadecimal and
// "&" for a pointer.
std::string textOf(const COMMemberType& type);
std::string textOf(const COMMemberEntry& entry);

// One line a member: DISPID, name and signatures.
std::string textOf(const COMMemberMap& members);

} // namespace axlink2::test
