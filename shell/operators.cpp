// Arithmetic, comparison and logic on values.
#include "shell/operators.h"

#include "host/text.h"
#include "shell/convert.h"
#include "shell/numbers.h"

#include <algorithm>

namespace velsh {

namespace {

using Op = BinaryOperator;

bool isComparison(Op op) { return op >= Op::Equal && op <= Op::GreaterEqual; }
bool isLogic(Op op) { return op == Op::And || op == Op::Or; }

// In the order of the enumeration.
constexpr const char* symbols[] = {"+",  "-",  "*", "/",  "^", ".*", "./", ".^",
                                   "==", "~=", "<", "<=", ">", ">=", "&",  "|"};
static_assert(std::size(symbols) == static_cast<std::size_t>(Op::Or) + 1);

std::string symbolOf(Op op) { return symbols[static_cast<std::size_t>(op)]; }

template <class Number>
Number arithmetic(Op op, Number a, Number b) {
    switch (op) {
    case Op::Add:
        return a + b;
    case Op::Subtract:
        return a - b;
    case Op::Multiply:
    case Op::DotMultiply:
        return a * b;
    case Op::Divide:
    case Op::DotDivide:
        return a / b;
    default:
        return std::pow(a, b);
    }
}

template <class Number>
bool compare(Op op, const Number& a, const Number& b) {
    switch (op) {
    case Op::Equal:
        return a == b;
    case Op::NotEqual:
        return a != b;
    case Op::Less:
        return a < b;
    case Op::LessEqual:
        return a <= b;
    case Op::Greater:
        return a > b;
    default:
        return a >= b;
    }
}

bool truth(WideNumber value) {
    if (std::isnan(value)) raise("wrongtype", "NaN is neither true nor false.");
    return value != 0;
}

bool isScalar(const hxArray* array) { return countOf(array) == 1; }

void requireOperands(Op op, const hxArray* a, const hxArray* b) {
    for (const hxArray* side : {a, b})
        if (!isNumberLike(side))
            raiseWrongType("'" + symbolOf(op) + "' needs real, full numbers on both sides", side);
    const bool needsScalar = (op == Op::Multiply && !isScalar(a) && !isScalar(b)) ||
                             (op == Op::Divide && !isScalar(b)) ||
                             (op == Op::Power && !(isScalar(a) && isScalar(b)));
    if (needsScalar)
        raise("notsupported", "'" + symbolOf(op) + "' of matrices isn't part of the language; '." +
                                  symbolOf(op) + "' goes element by element.");
    if (!isScalar(a) && !isScalar(b) && extentsOf(a) != extentsOf(b))
        raise("dimagree", "'" + symbolOf(op) + "' needs arrays of the same size or a scalar: " +
                              sizeText(a) + " and " + sizeText(b) + ".");
}

// The class of what arithmetic gives.
hxClassID resultType(Op op, const hxArray* a, const hxArray* b) {
    const hxClassID left = hxGetClassID(a), right = hxGetClassID(b);
    if (isInteger(left) && isInteger(right) && left != right)
        raise("wrongtype", "'" + symbolOf(op) + "' can't join the integer classes " +
                               hxGetClassName(a) + " and " + hxGetClassName(b) + ".");
    if (isInteger(left)) return left;
    if (isInteger(right)) return right;
    return left == hxSINGLE_CLASS || right == hxSINGLE_CLASS ? hxSINGLE_CLASS : hxDOUBLE_CLASS;
}

// Calls `use(i, a_i, b_i)`, a scalar side taken with every element of the other.
template <class Use>
void forEachPair(const hxArray* a, const hxArray* b, std::size_t count, Use use) {
    const std::vector<WideNumber> left = numbersOf(a), right = numbersOf(b);
    const std::size_t leftStep = isScalar(a) ? 0 : 1, rightStep = isScalar(b) ? 0 : 1;
    for (std::size_t i = 0; i < count; ++i)
        use(i, left[i * leftStep], right[i * rightStep]);
}

Value applyArithmetic(Op op, const hxArray* a, const hxArray* b, const Extents& extents) {
    const hxClassID type = resultType(op, a, b);
    Value result = numericArray(type, extents);
    withElementType(type, [&](auto* element) {
        using Element = std::remove_pointer_t<decltype(element)>;
        // Floating point rounds once, in its own class.
        using Work = std::conditional_t<std::is_floating_point_v<Element>, Element, WideNumber>;
        auto* data = static_cast<Element*>(hxGetWritableData(result.writable()));
        forEachPair(a, b, countOf(result.get()), [&](std::size_t i, WideNumber x, WideNumber y) {
            data[i] = velmar::convertNumber<Element>(
                arithmetic(op, static_cast<Work>(x), static_cast<Work>(y)));
        });
    });
    return result;
}

using Texts = std::vector<std::optional<std::u16string>>;

Texts textsOf(const hxArray* array) {
    Texts texts;
    Value strings = toString(array);
    for (const auto& text : hoststring::getString(strings.get()))
        texts.push_back(text ? std::optional<std::u16string>(*text) : std::nullopt);
    return texts;
}

// Strings element by element: joined, or compared as text.
Value applyToStrings(Op op, const hxArray* a, const hxArray* b) {
    if (op != Op::Add && !isComparison(op))
        raise("wrongtype", "'" + symbolOf(op) + "' isn't defined for strings.");
    const Texts left = textsOf(a), right = textsOf(b);
    if (left.size() != right.size() && left.size() != 1 && right.size() != 1)
        raise("dimagree", "'" + symbolOf(op) + "' needs as many strings on both sides, or one.");
    const std::size_t count = left.size() == 1 ? right.size() : left.size();
    const hxArray* larger = left.size() == 1 && right.size() != 1 ? b : a;
    const bool isRow = count == 1 || !hoststring::isString(larger) || hxGetM(larger) == 1;
    Texts joined(count);
    Value compared = numericArray(hxLOGICAL_CLASS, isRow ? Extents{1, count} : Extents{count, 1});
    for (std::size_t i = 0; i < count; ++i) {
        const auto& x = left[left.size() == 1 ? 0 : i];
        const auto& y = right[right.size() == 1 ? 0 : i];
        if (op != Op::Add)
            hxGetLogicals(compared.writable())[i] =
                x && y ? compare(op, *x, *y) : op == Op::NotEqual;
        else if (x && y)
            joined[i] = *x + *y;
    }
    if (op != Op::Add) return compared;
    return Value(
        hoststring::createStringArray(isRow ? 1 : count, isRow ? count : 1, std::move(joined)));
}

} // namespace

Value applyBinary(Op op, const hxArray* a, const hxArray* b) {
    // What most programs work with needs no look at shapes and classes.
    if (const double* x = doublesOf(a), *y = doublesOf(b);
        x && y && isScalar(a) && isScalar(b) && !isLogic(op))
        return isComparison(op) ? logical(compare(op, *x, *y)) : number(arithmetic(op, *x, *y));
    if (hoststring::isString(a) || hoststring::isString(b)) return applyToStrings(op, a, b);
    requireOperands(op, a, b);
    const Extents extents = extentsOf(isScalar(a) ? b : a);
    if (!isComparison(op) && !isLogic(op)) return applyArithmetic(op, a, b, extents);
    Value result = numericArray(hxLOGICAL_CLASS, extents);
    bool* data = hxGetLogicals(result.writable());
    forEachPair(a, b, countOf(result.get()), [&](std::size_t i, WideNumber x, WideNumber y) {
        data[i] = op == Op::And  ? truth(x) && truth(y)
                  : op == Op::Or ? truth(x) || truth(y)
                                 : compare(op, x, y);
    });
    return result;
}

Value applyUnary(UnaryOperator op, const hxArray* operand) {
    if (!isNumberLike(operand)) raiseWrongType("The operator needs real, full numbers", operand);
    if (op == UnaryOperator::Not) {
        Value result = numericArray(hxLOGICAL_CLASS, extentsOf(operand));
        bool* data = hxGetLogicals(result.writable());
        forEachNumber(operand, [&](std::size_t i, WideNumber x) { data[i] = !truth(x); });
        return result;
    }
    Value zero = number(0);
    return applyBinary(op == UnaryOperator::Plus ? Op::Add : Op::Subtract, zero.get(), operand);
}

bool isTrue(const hxArray* condition) {
    if (!isNumberLike(condition))
        raiseWrongType("A condition must be a logical value or a number", condition);
    bool all = countOf(condition) > 0;
    forEachNumber(condition, [&](std::size_t, WideNumber x) { all = truth(x) && all; });
    return all;
}

Value makeRange(const hxArray* first, const hxArray* step, const hxArray* last) {
    const double from = scalarOf(first, "The start of a range");
    const double by = step ? scalarOf(step, "The step of a range") : 1;
    const double to = scalarOf(last, "The end of a range");
    if (std::isnan(from) || std::isnan(by) || std::isnan(to))
        raise("wrongtype", "A range can't begin, step or end with NaN.");
    // The last element may miss the end by rounding alone.
    const double exact = by == 0 ? -1 : (to - from) / by;
    const double rounding = 3 * std::numeric_limits<double>::epsilon();
    const double steps = std::floor(exact + rounding * std::max(1.0, std::fabs(exact)));
    if (!(steps < 1e15)) raise("toolarge", "The range would have too many elements.");
    const std::size_t count = steps < 0 ? 0 : static_cast<std::size_t>(steps) + 1;
    Value range = numericArray(hxDOUBLE_CLASS, {1, count});
    auto* data = static_cast<double*>(hxGetWritableData(range.writable()));
    for (std::size_t i = 0; i < count; ++i)
        data[i] = from + static_cast<double>(i) * by;
    const hxClassID type = isInteger(hxGetClassID(first))  ? hxGetClassID(first)
                           : isInteger(hxGetClassID(last)) ? hxGetClassID(last)
                                                           : hxDOUBLE_CLASS;
    return type == hxDOUBLE_CLASS ? range : toNumbers(range.get(), type);
}

} // namespace velsh
