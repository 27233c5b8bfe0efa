// The host's types of one number and of one text.
#include "host/array_numbers.h"
#include "host/host_messages.h"
#include "host/host_types.h"
#include "host/number_conversion.h"
#include "host/text.h"

#include <cstring>

namespace velmar {

void HostType::failMisfit(const hxArray& array) const {
    std::string what = hxGetClassName(&array);
    std::string shape;
    for (std::size_t i = 0; i < array.rank; ++i)
        shape += (i ? "-by-" : "") + std::to_string(array.dimensions()[i]);
    fail(keys::WrongConversion, shape + " " + what, std::string(getName()));
}

namespace {

// The value form: integers and logicals in the word, both floating-point types as a double.
template <class T>
constexpr bool isWordInteger = std::is_integral_v<T>;

template <class T, hxClassID ClassId>
class ScalarType final : public HostType {
  public:
    explicit ScalarType(const char* name) : name_(name) {}

    const char* getName() const override { return name_; }
    bool isWord() const override { return true; }
    std::size_t getValueSize() const override { return sizeof(T); }

    Fit fit(const hxArray& array) const override {
        if (array.count != 1 || array.kind != harray::detail::ElementKind::Plain || array.complex ||
            array.sparse || array.classId == hxCHAR_CLASS)
            return Fit::None;
        if (array.classId == ClassId) return Fit::Exact;
        if constexpr (isWordInteger<T>)
            if (isNan(array)) return Fit::None;
        return Fit::Convertible;
    }

    void convertFromHost(hos::HOSValue* out, const hxArray* array) override {
        const hxArray& source = harray::detail::reading(array);
        switch (fit(source)) {
        case Fit::Exact:
            *out = valueOf(*source.elements<T>());
            return;
        case Fit::None:
            failMisfit(source);
        default:
            visitNumbers(source,
                         [&](const auto* number) { *out = valueOf(convertNumber<T>(*number)); });
        }
    }

    void convertToHost(hxArray** out, hos::HOSValue value) override {
        harray::unique_array array =
            harray::detail::makeScalar(ClassId, harray::detail::ElementKind::Plain);
        if constexpr (std::is_same_v<T, bool>)
            *array->template elements<bool>() = value.integer() != 0;
        else if constexpr (isWordInteger<T>)
            *array->template elements<T>() = static_cast<T>(value.integer());
        else
            *array->template elements<T>() = static_cast<T>(value.number());
        *out = array.release();
    }

  private:
    static hos::HOSValue valueOf(T number) {
        if constexpr (isWordInteger<T>)
            return hos::HOSValue::ofInteger(static_cast<std::int64_t>(number));
        else
            return hos::HOSValue::ofDouble(static_cast<double>(number));
    }
    static bool isNan(const hxArray& array) {
        if (array.classId == hxDOUBLE_CLASS) return std::isnan(*array.elements<double>());
        if (array.classId == hxSINGLE_CLASS) return std::isnan(*array.elements<float>());
        return false;
    }

    const char* name_;
};

class TextType : public HostType {
  public:
    Fit fit(const hxArray& array) const override {
        return hoststring::isScalarText(&array, false, true) ? Fit::Text : Fit::None;
    }

  protected:
    std::u16string textOf(const hxArray* array) const {
        const hxArray& source = harray::detail::reading(array);
        require(source);
        std::u16string text;
        hoststring::getScalarText(&source, text, true);
        return text;
    }
};

class UnicodeStringType final : public TextType {
  public:
    const char* getName() const override { return "unicodeString"; }

    void convertFromHost(hos::HOSValue* out, const hxArray* array) override {
        *out = hos::HOSValue::ofPointer(new std::u16string(textOf(array)));
    }
    void convertToHost(hxArray** out, hos::HOSValue value) override {
        const std::u16string* text = value.text();
        *out = harray::create(text ? std::u16string_view(*text) : std::u16string_view()).release();
    }
    hos::HOSValue cloneValue(hos::HOSValue value) const override {
        return value.isNull() ? value : hos::HOSValue::ofPointer(new std::u16string(*value.text()));
    }
    void releaseValue(hos::HOSValue value) const override { delete value.text(); }
    bool isIdentical(hos::HOSValue a, hos::HOSValue b) const override {
        return a.word() == b.word() || (!a.isNull() && !b.isNull() && *a.text() == *b.text());
    }
    std::size_t getHashCode(const hos::HOSValue& value) const override {
        return value.isNull() ? 0 : std::hash<std::u16string>()(*value.text());
    }
};

// Narrow text that ends with a zero: an array of char.
class AsciiStringType final : public TextType {
  public:
    const char* getName() const override { return "asciiString"; }

    void convertFromHost(hos::HOSValue* out, const hxArray* array) override {
        *out = copyOf(hsys::i18n::to_string(textOf(array)).c_str());
    }
    void convertToHost(hxArray** out, hos::HOSValue value) override {
        *out = hxCreateString(value.pointer<const char>());
    }
    hos::HOSValue cloneValue(hos::HOSValue value) const override {
        return value.isNull() ? value : copyOf(value.pointer<const char>());
    }
    void releaseValue(hos::HOSValue value) const override { delete[] value.pointer<char>(); }
    bool isIdentical(hos::HOSValue a, hos::HOSValue b) const override {
        return a.word() == b.word() || (!a.isNull() && !b.isNull() && view(a) == view(b));
    }
    std::size_t getHashCode(const hos::HOSValue& value) const override {
        return value.isNull() ? 0 : std::hash<std::string_view>()(view(value));
    }

  private:
    static std::string_view view(hos::HOSValue value) { return value.pointer<const char>(); }
    static hos::HOSValue copyOf(const char* text) {
        const std::size_t bytes = std::strlen(text) + 1;
        return hos::HOSValue::ofPointer(std::memcpy(new char[bytes], text, bytes));
    }
};

} // namespace

void addScalarTypes(std::vector<std::unique_ptr<HostType>>& types) {
    types.push_back(std::make_unique<ScalarType<double, hxDOUBLE_CLASS>>("double scalar"));
    types.push_back(std::make_unique<ScalarType<float, hxSINGLE_CLASS>>("single scalar"));
    types.push_back(std::make_unique<ScalarType<bool, hxLOGICAL_CLASS>>("logical scalar"));
    types.push_back(std::make_unique<ScalarType<std::int8_t, hxINT8_CLASS>>("int8 scalar"));
    types.push_back(std::make_unique<ScalarType<std::uint8_t, hxUINT8_CLASS>>("uint8 scalar"));
    types.push_back(std::make_unique<ScalarType<std::int16_t, hxINT16_CLASS>>("int16 scalar"));
    types.push_back(std::make_unique<ScalarType<std::uint16_t, hxUINT16_CLASS>>("uint16 scalar"));
    types.push_back(std::make_unique<ScalarType<std::int32_t, hxINT32_CLASS>>("int32 scalar"));
    types.push_back(std::make_unique<ScalarType<std::uint32_t, hxUINT32_CLASS>>("uint32 scalar"));
    types.push_back(std::make_unique<ScalarType<std::int64_t, hxINT64_CLASS>>("int64 scalar"));
    types.push_back(std::make_unique<ScalarType<std::uint64_t, hxUINT64_CLASS>>("uint64 scalar"));
    types.push_back(std::make_unique<UnicodeStringType>());
    types.push_back(std::make_unique<AsciiStringType>());
}

} // namespace velmar
