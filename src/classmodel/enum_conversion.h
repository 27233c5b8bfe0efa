// The conversion between an enumeration of a type library and host arrays.
#pragma once

#include "host/data_type.h"

namespace axlink2 {

class TypedEnumConversion : public hos::HOSTypeConversion {
  public:
    // `type` belongs to the repository, as this conversion will.
    explicit TypedEnumConversion(hos::TypedEnumStringType* type) : enumType(type) {}

    // The constant's name as text, or the number as a double when no constant has it.
    void convertToHost(hxArray** out, hos::HOSValue value) override;
    // A name, whatever its case, or any number. Raises "VELMAR:class:InvalidEnumValue" for a text
    // that names no constant.
    void convertFromHost(hos::HOSValue* out, const hxArray* array) override;

    hos::TypedEnumStringType* enumType;
};

} // namespace axlink2
