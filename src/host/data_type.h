// Host data types, the conversions between them and arrays, and the repository that holds both. The
// host and its modules call the virtual operations by position: none may be removed or moved.
#pragma once

#include "host/interface.h"
#include "host/interned.h"
#include "host/value.h"
#include "platform/fold_case.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace hos {

enum class OverloadsKeyOperations : int { No = 0, Yes = 1 };

// A data type of the host. A value of the type is a `HOSValue` whose form is the type's own.
class HOSDataType {
  public:
    explicit HOSDataType(OverloadsKeyOperations keyOperations);
    HOSDataType(const HOSDataType&) = delete;
    HOSDataType& operator=(const HOSDataType&) = delete;

    virtual ~HOSDataType();
    virtual const char* getTypeKind() const;
    virtual const char* getName() const = 0;
    virtual const char* getDescription() const;
    virtual const char* getDetailedDescription() const;
    virtual const char* getPossibleValuesDescription() const;
    virtual bool isPossibleValuesFinite() const;
    // The values of a type with a finite list of them, else none.
    virtual Enumeration<HOSValue> getPossibleValues() const;
    virtual HOSValue getDefaultValue() const;
    virtual int dataTypeCode1() const;
    virtual const char* getOwnerName() const;
    virtual int dataTypeCode2() const;
    virtual bool checkValue(HOSValue value, bool strict) const;
    virtual bool dataTypeFlag() const;
    virtual bool isEqualWithEqualNans(HOSValue a, HOSValue b) const;
    virtual bool isIdentical(HOSValue a, HOSValue b) const;
    virtual int dataTypeCode3() const;
    // Bytes of the value behind the word.
    virtual std::size_t getValueSize() const;
    // A value of its own, equal to `value`.
    virtual HOSValue cloneValue(HOSValue value) const;
    virtual HOSValue copyInternal(HOSValue value) const;
    // Ends a value that the caller owned.
    virtual void releaseValue(HOSValue value) const;
    virtual void destroyInternal(HOSValue value) const;
    virtual std::size_t getHashCode(const HOSValue& value) const;
    virtual bool canContainInterfaces() const;
    virtual void getReference();
    virtual void releaseReference();
    virtual std::vector<HOSInterfacePtr> getInterfaces(HOSValue value) const;
    virtual const char* getVelFormat() const;
    virtual bool isVELMARArrayType() const;
    virtual std::size_t keyHash(HOSValue value) const;
    virtual bool keyMatch(HOSValue a, HOSValue b) const;

    // The handle by which the repository gives this type out.
    HOSInterfacePtr handle() const { return handle_; }

  private:
    HOSInterfacePtr handle_;
};

// A data type by name; unresolved when the repository didn't know the name at that moment.
class HOSDataTypePtr {
  public:
    HOSDataTypePtr() = default;
    explicit HOSDataTypePtr(id name);
    explicit HOSDataTypePtr(const HOSInterfacePtr& handle);

    id getID() const { return name_; }
    HOSDataType* operator->() const { return type_; }
    explicit operator bool() const { return type_ != nullptr; }

  private:
    friend struct HOSDataTypePtrHelper;
    id name_;
    HOSDataType* type_ = nullptr;
};

struct HOSDataTypePtrHelper {
    // The type itself; null when the pointer is unresolved or the handle is no data type's.
    static HOSDataType* getObject(const HOSDataTypePtr& pointer) { return pointer.type_; }
    static HOSDataType* getObject(const HOSInterfacePtr& handle);
};

// The way between values of one data type and host arrays.
class HOSTypeConversion {
  public:
    virtual ~HOSTypeConversion() = default;
    // `*out` becomes a new array, owned by the caller, or null. `value` stays the caller's.
    virtual void convertToHost(hxArray** out, HOSValue value) = 0;
    // `*out` becomes a new value, to be ended by the type's `releaseValue`.
    virtual void convertFromHost(HOSValue* out, const hxArray* array) = 0;
};

// All data types and conversions. They live as long as the process.
//
// The host's own types and the form of their values:
//   "any", "handle", "handle scalar", "handle vector", "struct", "cell", "char", "double" (of any
//   shape), "meta.property", "event.EventData", and the id of every class: the `hxArray*`;
//   "unicodeString": a `std::u16string*` made with new; "asciiString": a `char*` made with new[];
//   "logical scalar" and "int8 scalar" to "uint64 scalar": the integer in the word;
//   "double scalar" and "single scalar": the bit pattern of a double.
class HOSTypeRepository {
  public:
    // The type of that name; a null handle when it is unknown.
    static HOSInterfacePtr getType(id name);
    // Takes ownership. A name that is known already keeps its first type.
    static void addGlobalType(HOSDataType* type);
    // Null when there is none. Belongs to the repository.
    static HOSTypeConversion* getConversion(id from, id to);
    // Takes ownership. A pair that has a conversion already keeps its first one.
    static void addConversion(id from, id to, HOSTypeConversion* conversion);
};

// An enumeration: integers with names. The value form is the integer in the word.
class TypedEnumStringType : public HOSDataType {
  public:
    // An enumeration on the integer type `base` that finds its names whatever their case, added to
    // the repository, which owns it. An enumeration of that name that is there already is given
    // instead; raises when the name is another type's. A null description is an empty one.
    static TypedEnumStringType* createCaseInsensitiveInstance(const HOSDataTypePtr& base,
                                                              const char* name,
                                                              const char* description);

    // Appends a constant. A second name for a value is kept; `valueName` gives the first.
    virtual void addValue(std::int64_t value, const char* name, const char* description);

    const char* valueName(HOSValue value) const;             // null when no constant has it
    void valueOfName(HOSValue* out, const char* name) const; // unchanged when unknown
    bool hasName(const char* name) const;

    const char* getTypeKind() const override;
    const char* getName() const override;
    const char* getDescription() const override;
    bool isPossibleValuesFinite() const override;
    Enumeration<HOSValue> getPossibleValues() const override;
    bool checkValue(HOSValue value, bool strict) const override;
    std::size_t getValueSize() const override;

  private:
    TypedEnumStringType(const HOSDataTypePtr& base, const char* name, const char* description);

    HOSDataTypePtr base_;
    std::string name_;
    std::string description_;
    std::vector<std::pair<std::int64_t, std::string>> constants_;
    std::map<platform::OleString, std::int64_t, platform::LessNoCase> valuesByName_;
};

} // namespace hos
