// The host's types whose values are arrays.
#include "host/array_numbers.h"
#include "host/host_types.h"
#include "host/object_array.h"
#include "host/text.h"

#include <algorithm>

namespace velmar {
namespace {

using harray::detail::ElementKind;

bool isObject(const hxArray& array) { return array.kind == ElementKind::Object; }

Fit fitAny(const hxArray&) { return Fit::Any; }

Fit fitHandle(const hxArray& array) {
    if (isObject(array)) return Fit::Objects;
    return hoMeansNoObject(&array) ? Fit::Convertible : Fit::None;
}

Fit fitHandleScalar(const hxArray& array) {
    return isObject(array) && array.count == 1 ? Fit::OneObject : Fit::None;
}

Fit fitHandleVector(const hxArray& array) {
    const bool isVector = array.rank == 2 && (array.extents[0] <= 1 || array.extents[1] <= 1);
    return isObject(array) && isVector ? Fit::ObjectVector : Fit::None;
}

template <hxClassID ClassId>
Fit fitClass(const hxArray& array) {
    return array.classId == ClassId ? Fit::Exact : Fit::None;
}

bool isOneNumber(const hxArray& array) {
    return array.count == 1 && array.kind == ElementKind::Plain && !array.complex &&
           !array.sparse && !std::isnan(hxGetScalar(&array));
}

Fit fitChar(const hxArray& array) {
    if (array.classId == hxCHAR_CLASS) return Fit::Exact;
    if (hoststring::isScalarText(&array, false, true)) return Fit::Convertible;
    return isOneNumber(array) ? Fit::Code : Fit::None;
}

Fit fitDouble(const hxArray& array) {
    if (array.classId == hxDOUBLE_CLASS) return Fit::Exact;
    const bool isNumber = array.kind == ElementKind::Plain && array.classId != hxCHAR_CLASS;
    return isNumber && !array.sparse ? Fit::Convertible : Fit::None;
}

// A number stays what it is: only the receiver knows how many characters there are.
hxArray* charOfString(const hxArray& array) {
    if (array.kind == ElementKind::Plain) return hxCreateSharedDataCopy(&array);
    return harray::create(*hoststring::getString(&array).front()).release();
}

hxArray* doubleOfNumbers(const hxArray& array) {
    harray::unique_array result =
        harray::detail::makeArray(hxDOUBLE_CLASS, ElementKind::Plain, array.rank,
                                  array.dimensions(), array.complex, harray::detail::Filling::None);
    const std::size_t parts = array.count * (array.complex ? 2 : 1);
    visitNumbers(array, [&](const auto* numbers) {
        std::transform(numbers, numbers + parts, result->elements<double>(),
                       [](auto number) { return static_cast<double>(number); });
    });
    return result.release();
}

struct ArrayRule {
    const char* name;
    Fit (*fit)(const hxArray&);
    // How a fitting array of another class becomes one of class `wanted`; null: any array passes.
    hxArray* (*convert)(const hxArray&) = nullptr;
    hxClassID wanted = hxUNKNOWN_CLASS;
};

constexpr ArrayRule arrayRules[] = {
    {"any", fitAny},
    {"handle", fitHandle},
    {"handle scalar", fitHandleScalar},
    {"handle vector", fitHandleVector},
    {"struct", fitClass<hxSTRUCT_CLASS>},
    {"cell", fitClass<hxCELL_CLASS>},
    {"char", fitChar, charOfString, hxCHAR_CLASS},
    {"double", fitDouble, doubleOfNumbers, hxDOUBLE_CLASS},
};

class ArrayType : public HostType {
  public:
    bool isVELMARArrayType() const override { return true; }
    bool canContainInterfaces() const override { return true; }
    bool passes(const hxArray&) const override { return true; }

    void convertFromHost(hos::HOSValue* out, const hxArray* array) override {
        const hxArray& source = harray::detail::reading(array);
        require(source);
        *out = hos::HOSValue::ofPointer(converted(source));
    }
    // Null reads as a 0-by-0 double.
    void convertToHost(hxArray** out, hos::HOSValue value) override {
        *out = hxCreateSharedDataCopy(value.array());
    }
    hos::HOSValue cloneValue(hos::HOSValue value) const override {
        return value.isNull() ? value
                              : hos::HOSValue::ofPointer(hxCreateSharedDataCopy(value.array()));
    }
    void releaseValue(hos::HOSValue value) const override { harray::destroyArray(value.array()); }

  protected:
    virtual hxArray* converted(const hxArray& array) const {
        return hxCreateSharedDataCopy(&array);
    }
};

class RuledArrayType final : public ArrayType {
  public:
    explicit RuledArrayType(const ArrayRule& rule) : rule_(rule) {}

    const char* getName() const override { return rule_.name; }
    Fit fit(const hxArray& array) const override { return rule_.fit(array); }
    bool passes(const hxArray& array) const override {
        return !rule_.convert || array.classId == rule_.wanted;
    }

  protected:
    hxArray* converted(const hxArray& array) const override {
        return passes(array) ? ArrayType::converted(array) : rule_.convert(array);
    }

  private:
    const ArrayRule& rule_;
};

// Arrays of the objects of one class and of those derived from it.
class ClassType final : public ArrayType {
  public:
    explicit ClassType(hos::id classId) : classId_(classId) {}

    const char* getName() const override { return classId_.c_str(); }
    Fit fit(const hxArray& array) const override {
        if (!isObject(array)) return Fit::None;
        if (array.objectClass == classId_) return Fit::SameClass;
        return hxIsA(&array, classId_.c_str()) ? Fit::Subclass : Fit::None;
    }

  private:
    hos::id classId_;
};

} // namespace

HostType* makeClassType(hos::id classId) { return new ClassType(classId); }

std::vector<std::unique_ptr<HostType>> makeHostTypes() {
    std::vector<std::unique_ptr<HostType>> types;
    for (const ArrayRule& rule : arrayRules)
        types.push_back(std::make_unique<RuledArrayType>(rule));
    for (const char* name : {"meta.property", "event.EventData"})
        types.push_back(std::make_unique<ClassType>(hos::internal::makeInterned(name)));
    addScalarTypes(types);
    return types;
}

} // namespace velmar
