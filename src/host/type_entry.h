// What the host knows of a type name: the type, its conversion from arrays, and what fits it.
#pragma once

#include "host/array_store.h"
#include "host/data_type.h"

namespace velmar {

// How closely an array fits a declared type; the smaller the closer.
enum class Fit : std::uint8_t {
    SameClass,
    Subclass,
    OneObject,
    ObjectVector,
    Objects,
    Text,
    Exact,
    Convertible,
    Code, // a number in place of a character
    Open, // a module's type, which judges when it converts
    Any,
    None,
};

// A type of the host itself, which is also its own conversion from and to arrays.
class HostType : public hos::HOSDataType, public hos::HOSTypeConversion {
  public:
    HostType() : HOSDataType(hos::OverloadsKeyOperations::No) {}

    virtual Fit fit(const hxArray& array) const = 0;
    // Whether a fitting array is the value of this type as it stands.
    virtual bool passes(const hxArray&) const { return false; }
    // Whether the word is all of a value, so that nothing has to end it.
    virtual bool isWord() const { return false; }
    // Raises unless the array fits.
    void require(const hxArray& array) const {
        if (fit(array) == Fit::None) failMisfit(array);
    }

  protected:
    [[noreturn]] void failMisfit(const hxArray& array) const;
};

// The types that every host has: arrays, objects, text and scalars.
std::vector<std::unique_ptr<HostType>> makeHostTypes();
// The type of the objects of a class. The caller owns it.
HostType* makeClassType(hos::id classId);

// Entries are made once for each name and never move or end.
struct TypeEntry {
    hos::id name;
    hos::HOSDataType* type = nullptr; // null while the name is unknown
    const HostType* host = nullptr;
    const hos::TypedEnumStringType* enumeration = nullptr;
    hos::HOSTypeConversion* conversion = nullptr; // between "any" and this type
    bool isWord = false;                          // values need no end

    bool holdsArrays() const { return host && host->isVELMARArrayType(); }
    Fit fit(const hxArray& array) const { return host ? host->fit(array) : openFit(array); }

    // A value of the type, which the array must fit: perhaps the array itself, which stays its
    // owner's. `endInput` ends it. Null reads as a 0-by-0 double.
    hos::HOSValue valueOf(const hxArray* array) const;
    void endInput(hos::HOSValue value, const hxArray* array) const {
        if (!isWord && value.array() != &harray::detail::reading(array)) releaseValue(value);
    }
    // The array of a value that isn't one itself and stays the caller's. Null stands for no array.
    harray::unique_array arrayOf(hos::HOSValue value) const;
    // The array of a value that the caller owned; the value ends. Null stands for no array.
    harray::unique_array takeArray(hos::HOSValue value) const;
    void releaseValue(hos::HOSValue value) const {
        if (type && !isWord) type->releaseValue(value);
    }

  private:
    // How an array fits a module's type.
    Fit openFit(const hxArray& array) const;
};

// The entry of a name, which may be unknown as yet.
const TypeEntry& typeEntry(hos::id name);
// The same entry once more when it was unknown and may be known by now.
inline const TypeEntry& resolved(const TypeEntry& entry) {
    return entry.type ? entry : typeEntry(entry.name);
}

} // namespace velmar
