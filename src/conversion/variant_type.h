// The host data types whose values are VARIANTs, and their conversion from and to any array.
#pragma once

#include "host/data_type.h"
#include "platform/com.h"

#include <string>

namespace axlink2 {

class COMVariantType : public hos::HOSDataType {
  public:
    explicit COMVariantType(std::string name)
        : HOSDataType(hos::OverloadsKeyOperations::No), name(std::move(name)) {}

    const char* getTypeKind() const override { return "VARIANT"; }
    const char* getName() const override { return name.c_str(); }
    int dataTypeCode1() const override { return 7; }
    const char* getOwnerName() const override { return "COM"; }
    int dataTypeCode2() const override { return 192; }
    bool dataTypeFlag() const override { return false; }
    int dataTypeCode3() const override { return 2; }
    std::size_t getValueSize() const override { return sizeof(VARIANT); }
    // A by-reference VARIANT is copied as a reference: both values share what it refers to.
    hos::HOSValue cloneValue(hos::HOSValue value) const override;
    void releaseValue(hos::HOSValue value) const override;

    std::string name;
};

// How arrays become values of one such type.
class COMTypeConversionVariant : public hos::HOSTypeConversion {
  public:
    COMTypeConversionVariant(VARTYPE vartype, bool forceArray, bool byRef)
        : vartype(vartype), forceArray(forceArray), byRef(byRef) {}

    // Null for a null value.
    void convertToHost(hxArray** out, hos::HOSValue value) override;
    // Raises what the general conversion of the array raises.
    void convertFromHost(hos::HOSValue* out, const hxArray* array) override;

    VARTYPE vartype; // of the elements, or VT_VARIANT
    bool forceArray;
    bool byRef;
};

// The type of that name, which is added with its conversion when the host doesn't know it yet.
hos::HOSDataTypePtr variantType(const std::string& name, VARTYPE vartype, bool forceArray,
                                bool byRef);

} // namespace axlink2
