// Reading and writing of numbers, independent of the C library's locale.
#include "platform/portable/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace {

constexpr std::u16string_view spaces = u" \t\n\v\f\r";

bool isDigit(char16_t c) { return c >= u'0' && c <= u'9'; }

class Reader {
  public:
    explicit Reader(std::u16string_view text) : rest_(text) {}

    std::optional<NumberText> read() {
        skipSpaces();
        if (peek() == u'&') return readBits();
        readPrefix();
        if (!readDigits() || !readExponent() || !readSuffix()) return std::nullopt;
        return number_;
    }

  private:
    char16_t peek() const { return rest_.empty() ? u'\0' : rest_.front(); }
    bool accept(char16_t c) {
        if (rest_.empty() || rest_.front() != c) return false;
        rest_.remove_prefix(1);
        return true;
    }
    void skipSpaces() {
        rest_.remove_prefix(std::min(rest_.find_first_not_of(spaces), rest_.size()));
    }

    // Each of the signs around the digits may stand once, in any order.
    bool acceptSign() {
        const char16_t sign = peek();
        if (signed_ || (sign != u'+' && sign != u'-')) return false;
        number_.negative = sign == u'-';
        rest_.remove_prefix(1);
        return signed_ = true;
    }
    bool acceptCurrency() { return !currency_ && (currency_ = accept(u'$')); }

    void readPrefix() {
        for (;; skipSpaces()) {
            if (acceptSign() || acceptCurrency()) continue;
            if (signed_ || !accept(u'(')) return;
            signed_ = parenthesis_ = number_.negative = true;
        }
    }

    bool readSuffix() {
        for (;;) {
            skipSpaces();
            if (rest_.empty()) return !parenthesis_;
            if (acceptSign() || acceptCurrency()) continue;
            if (!parenthesis_ || !accept(u')')) return false;
            parenthesis_ = false;
        }
    }

    bool readDigits() {
        bool any = false;
        for (; isDigit(peek()) || (any && peek() == u','); rest_.remove_prefix(1)) {
            if (peek() == u',') continue;
            number_.digits += static_cast<char>(peek());
            any = true;
        }
        if (accept(u'.')) {
            for (; isDigit(peek()); rest_.remove_prefix(1)) {
                number_.digits += static_cast<char>(peek());
                --number_.exponent;
                any = true;
            }
        }
        return any;
    }

    bool readExponent() {
        if (peek() != u'e' && peek() != u'E') return true;
        rest_.remove_prefix(1);
        const bool negative = peek() == u'-';
        if (negative || peek() == u'+') rest_.remove_prefix(1);
        if (!isDigit(peek())) return false;
        constexpr int beyondAllRanges = 100000;
        int exponent = 0;
        for (; isDigit(peek()); rest_.remove_prefix(1))
            exponent = std::min(exponent * 10 + (peek() - u'0'), beyondAllRanges);
        number_.exponent += negative ? -exponent : exponent;
        return true;
    }

    std::optional<NumberText> readBits() {
        accept(u'&');
        const bool hexadecimal = accept(u'H') || accept(u'h');
        if (!hexadecimal && !accept(u'O') && !accept(u'o')) return std::nullopt;
        std::string digits;
        for (; !rest_.empty() && rest_.front() < 0x80 && spaces.find(peek()) == spaces.npos;
             rest_.remove_prefix(1))
            digits += static_cast<char>(peek());
        skipSpaces();
        const char* end = digits.data() + digits.size();
        const auto read = std::from_chars(digits.data(), end, number_.bits, hexadecimal ? 16 : 8);
        if (digits.empty() || read.ec != std::errc() || read.ptr != end || !rest_.empty())
            return std::nullopt;
        number_.isBits = true;
        return number_;
    }

    std::u16string_view rest_;
    NumberText number_;
    bool signed_ = false;
    bool currency_ = false;
    bool parenthesis_ = false;
};

} // namespace

std::optional<NumberText> readNumber(std::u16string_view text) { return Reader(text).read(); }

HRESULT numberToDouble(const NumberText& number, double& result) {
    if (number.isBits) {
        result = static_cast<double>(number.bits);
        return S_OK;
    }
    const std::string text = number.digits + 'e' + std::to_string(number.exponent);
    double value = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
    if (read.ec == std::errc::result_out_of_range) {
        // Too small is zero; only too large is an error.
        const std::size_t leadingZeros = number.digits.find_first_not_of('0');
        if (static_cast<int>(number.digits.size() - leadingZeros) + number.exponent > 0)
            return DISP_E_OVERFLOW;
        value = 0;
    }
    result = number.negative ? -value : value;
    return S_OK;
}

std::string doubleToText(double value, int digits) {
    if (std::isnan(value)) return "NAN";
    if (std::isinf(value)) return value < 0 ? "-INF" : "INF";
    char buffer[40];
    // Adding zero makes negative zero positive.
    const auto end = std::to_chars(buffer, buffer + sizeof(buffer), value + 0.0,
                                   std::chars_format::general, digits)
                         .ptr;
    std::string text(buffer, end);
    if (const auto exponent = text.find('e'); exponent != std::string::npos) text[exponent] = 'E';
    return text;
}
