// The converters between VARIANTs of one COM type and values of one host data type.
#pragma once

#include "comruntime/type_description.h"
#include "host/data_type.h"
#include "host/interface.h"
#include "host/value.h"
#include "platform/com.h"

namespace axlink2 {

// One COM type. Immutable, shared by all members and threads, alive as long as the module.
class ArgVarConverter {
  public:
    ArgVarConverter(VARTYPE vartype, const char* dataTypeName);
    ArgVarConverter(const ArgVarConverter&) = delete;
    ArgVarConverter& operator=(const ArgVarConverter&) = delete;

    virtual ~ArgVarConverter() = default;
    // A value in the data type's form; what it points at is the caller's. Scalars and text raise
    // `_com_error` when `v` can't be changed to the type.
    virtual hos::HOSValue fromVariant(const VARIANT& v) = 0;
    // The same for a value that came out of member `memberName` of `owner`. May take over what `v`
    // holds and leave it empty.
    virtual hos::HOSValue fromVariantFor(VARIANT& v, const hos::HOSInterfacePtr& owner,
                                         const char* memberName);
    // Writes the value to `*out`, or, with `byRef`, to `*backing` with `*out` a view of it.
    virtual void toVariant(hos::HOSValue value, VARIANT* out, VARIANT* backing, bool byRef) = 0;
    virtual hos::HOSDataTypePtr getDataType() { return dataType; }
    // Adds the reference that `toVariant` left out, before `*v` goes to a server and is cleared.
    virtual void retainForPut(VARIANT* v);

    const VARTYPE vartype;
    hos::HOSDataTypePtr dataType;
};

// Makes `*out` a by-reference VARIANT of what `*backing` holds. A `backing` of type VT_VARIANT is
// cleared; a type that has no by-reference form leaves the pointer of `*out` as it was.
void makeByRefVariant(VARIANT* out, VARIANT* backing);

// Hands a finished value over: into `*out`, or into `*backing` with `*out` a view of it.
void placeVariant(const VARIANT& value, VARIANT* out, VARIANT* backing, bool byRef);

// The same for what `write(VARIANT&)` writes into an empty VARIANT. It is written in place: a copy
// of a VARIANT whose parts were written just now makes the processor wait.
template <class Write>
void placeValue(VARIANT* out, VARIANT* backing, bool byRef, Write write) {
    VARIANT& target = byRef ? *backing : *out;
    target = {};
    write(target);
    if (byRef) makeByRefVariant(out, backing);
}

// Fills the converter tables. Called once, while the module registers.
void initConverters();

// The converter of a parameter, a result or an event argument; never null, never the caller's.
ArgVarConverter* getArgConverter(const COMMemberType& type);

// The converter of a property, which prefers doubles on the host's side.
ArgVarConverter* getPropConverter(const COMMemberType& type);

} // namespace axlink2
