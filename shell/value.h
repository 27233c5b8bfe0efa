// A value of a program: one owner of a host array.
#pragma once

#include "host/array.h"

#include <boost/container/small_vector.hpp>

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velsh {

using Extents = std::vector<std::size_t>;

// Copies share their data. A value that was never given an array reads as a 0-by-0 double.
class Value {
  public:
    Value() = default;
    explicit Value(harray::unique_array array) : array_(std::move(array)) {}
    explicit Value(hxArray* adopted) : array_(adopted) {}
    Value(const Value& other) : array_(shared(other.get())) {}
    Value(Value&&) noexcept = default;
    Value& operator=(Value other) noexcept {
        array_ = std::move(other.array_);
        return *this;
    }

    const hxArray* get() const { return array_ ? array_.get() : emptyArray(); }
    // For writing. The value has an array of its own afterwards.
    hxArray* writable();
    // The array, which the value gives up.
    harray::unique_array take();

  private:
    static harray::unique_array shared(const hxArray* array);
    static const hxArray* emptyArray();

    harray::unique_array array_;
};

// Most expressions give one, most calls take few; those allocate nothing.
using Values = boost::container::small_vector<Value, 2>;

Value copyOf(const hxArray* array);
Value number(double value);
Value logical(bool value);
Value charText(std::u16string_view text);
Value charText(std::string_view text);
// A string scalar.
Value stringText(std::u16string text);

// Elements zero; refuses more elements than an array of the shell may have.
Value numericArray(hxClassID type, const Extents& extents);
Value cellArray(std::size_t rows, std::size_t columns);
Value doubleRow(const std::vector<double>& numbers);

std::size_t countOf(const hxArray* array);
Extents extentsOf(const hxArray* array);
// The product of the extents. Raises for more elements than an array of the shell may have.
std::size_t countOf(const Extents& extents);

// The elements of a full, real array of doubles; null for any other.
const double* doublesOf(const hxArray* array);
bool isNumeric(const hxArray* array); // numbers, not logical
bool isInteger(hxClassID type);
bool isNumberLike(const hxArray* array); // numbers, logical and char, and not sparse or complex
bool isText(const hxArray* array);       // a char row, an empty char array or a string scalar
bool isObject(const hxArray* array);
bool isFunction(const hxArray* array);

// "2x3".
std::string sizeText(const hxArray* array);

// Raises an error of the language, "VELMAR:" and `key`.
[[noreturn]] void raise(const std::string& key, const std::string& text);
[[noreturn]] void raiseWrongType(const std::string& what, const hxArray* given);

// What a text argument says. Raises for anything else; `what` names it in the error.
std::u16string textOf(const hxArray* array, const std::string& what);
std::string narrowTextOf(const hxArray* array, const std::string& what);
// What a numeric or logical scalar says.
double scalarOf(const hxArray* array, const std::string& what);
// A whole number of at least 0, as a size.
std::size_t sizeOf(const hxArray* array, const std::string& what);

} // namespace velsh
