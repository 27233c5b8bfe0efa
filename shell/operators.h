// Arithmetic, comparison and logic on values.
#pragma once

#include "shell/value.h"

namespace velsh {

enum class UnaryOperator { Plus, Minus, Not };

enum class BinaryOperator {
    Add,
    Subtract,
    Multiply, // one side scalar
    Divide,   // right side scalar
    Power,    // both sides scalar
    DotMultiply,
    DotDivide,
    DotPower,
    Equal,
    NotEqual,
    Less,
    LessEqual,
    Greater,
    GreaterEqual,
    And,
    Or,
};

// A scalar side is taken with every element of the other; else the sizes must agree. An integer
// side gives its class, rounded and saturated. Strings are joined by Add and compared as text.
Value applyBinary(BinaryOperator operation, const hxArray* left, const hxArray* right);
Value applyUnary(UnaryOperator operation, const hxArray* operand);

// Whether all elements are true, and there is one: what if and while test.
bool isTrue(const hxArray* condition);

// `first`, `first + step`... up to `last`, a row.
Value makeRange(const hxArray* first, const hxArray* step, const hxArray* last);

} // namespace velsh
