// Numbers as text.
#include "host/array_numbers.h"
#include "host/display.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <type_traits>

namespace velmar {
namespace {

// How the numbers of one array are written.
enum class Style { Integers, Fixed, General };

std::string printed(const char* format, double number) {
    std::array<char, 400> text; // "%.0f" of the largest double has 309 digits
    std::snprintf(text.data(), text.size(), format, number);
    return text.data();
}

std::string finiteText(double number, Style style) {
    if (number == 0) return "0"; // without the sign of a negative zero
    switch (style) {
    case Style::Integers:
        return printed("%.0f", number);
    case Style::Fixed:
        return printed("%.4f", number);
    case Style::General:
        break;
    }
    return printed("%.5g", number);
}

std::string styledText(double number, Style style) {
    if (std::isnan(number)) return "NaN";
    if (std::isinf(number)) return number < 0 ? "-Inf" : "Inf";
    return finiteText(number, style);
}

// One style for all numbers, so that their points stand below each other where that is readable.
template <class T>
Style commonStyle(const T* numbers, std::size_t count) {
    bool areIntegers = true;
    double largest = 0;
    double smallest = HUGE_VAL;
    for (std::size_t i = 0; i < count; ++i) {
        const double magnitude = std::fabs(static_cast<double>(numbers[i]));
        if (!std::isfinite(magnitude) || magnitude == 0) continue;
        areIntegers = areIntegers && magnitude == std::floor(magnitude);
        largest = std::fmax(largest, magnitude);
        smallest = std::fmin(smallest, magnitude);
    }
    if (areIntegers && largest < 1e15) return Style::Integers;
    return count > 1 && smallest >= 1e-3 && largest < 1e5 ? Style::Fixed : Style::General;
}

template <class T>
std::vector<std::string> textsOf(const T* numbers, std::size_t count, bool complex) {
    std::vector<std::string> texts;
    texts.reserve(count);
    if constexpr (!std::is_floating_point_v<T>) {
        for (std::size_t i = 0; i < count; ++i)
            texts.push_back(std::to_string(+numbers[i]));
    } else {
        const Style style = commonStyle(numbers, count * (complex ? 2 : 1));
        for (std::size_t i = 0; i < count; ++i) {
            if (!complex) {
                texts.push_back(styledText(static_cast<double>(numbers[i]), style));
                continue;
            }
            const auto imaginary = static_cast<double>(numbers[2 * i + 1]);
            texts.push_back(styledText(static_cast<double>(numbers[2 * i]), style) +
                            (std::signbit(imaginary) ? " - " : " + ") +
                            styledText(std::fabs(imaginary), style) + "i");
        }
    }
    return texts;
}

} // namespace

std::string numberText(double number) { return styledText(number, commonStyle(&number, 1)); }

std::vector<std::string> numberTexts(const hxArray& array) {
    return visitNumbers(
        array, [&](const auto* numbers) { return textsOf(numbers, array.count, array.complex); });
}

} // namespace velmar
