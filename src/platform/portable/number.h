// The canonical number between the source and the target of a conversion: exact or real.
#pragma once

#include "platform/portable/decimal.h"
#include "platform/portable/unknown.h"

// What numbers of one kind have in common, and so how they are read and stored.
enum class NumberForm : std::uint8_t { none, integer, real, money, date, decimal, boolean };

struct NumberKind {
    NumberForm form = NumberForm::none;
    BYTE size = 0;         // of an integer, in bytes
    LONGLONG lowest = 0;   // of an integer
    ULONGLONG highest = 0; // of an integer
};

// The kind of a VARIANT without modifiers; form `none` when it holds no number.
const NumberKind& numberKind(VARTYPE vt) noexcept;

// Integers, money and decimals travel as DECIMAL, without loss; floating point and dates as double.
struct Number {
    bool isReal = false;
    int digits = 15; // significant digits of a real number
    double real = 0;
    DECIMAL exact{};
};

// The number in a VARIANT whose kind has a form.
HRESULT loadNumber(const VARIANT& source, Number& number) noexcept;

// The number in a text, rounded once, to what the target kind can hold.
HRESULT loadNumberText(std::u16string_view text, const NumberKind& target, Number& number);

// Fills kind and value of `target`, rounding halves to even before the range check.
// DISP_E_OVERFLOW leaves it untouched.
HRESULT storeNumber(const Number& number, VARTYPE vt, VARIANT& target);

// As loadNumber and storeNumber for integers and BOOL that convert bit by bit: those of one width,
// and BOOL to any. False when the range has to be checked.
bool copyIntegerBits(const VARIANT& source, VARTYPE vt, VARIANT& target) noexcept;

// "12.5", "-1E+16".
std::string numberToText(const Number& number);
