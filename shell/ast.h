// The parsed form of a program.
#pragma once

#include "host/interned.h"
#include "shell/operators.h"
#include "shell/source.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace velsh {

struct Expression;
// Shared: the body of an anonymous function outlives the program that it stands in.
using ExpressionPtr = std::shared_ptr<const Expression>;

struct NumberLiteral {
    double value;
};
struct TextLiteral {
    std::u16string text;
    bool isString;
};
struct Name {
    std::string name;
};
struct Colon {}; // all elements, as a subscript
struct End {};   // the last position, in a subscript
struct Unary {
    UnaryOperator operation;
    ExpressionPtr operand;
};
struct Binary {
    BinaryOperator operation;
    ExpressionPtr left, right;
};
// && and ||: the right side is evaluated when it decides.
struct ShortCircuit {
    bool isAnd;
    ExpressionPtr left, right;
};
struct Range {
    ExpressionPtr first, step, last; // step may be null
};
struct Matrix {
    bool isCell;
    std::vector<std::vector<ExpressionPtr>> rows;
};

// One step behind a value: (arguments), {arguments}, .name, .(expression).
struct Accessor {
    enum class Kind { Paren, Brace, Field, DynamicField };
    Kind kind;
    hos::id name;                         // of a field; looked up each time a program passes it
    std::vector<ExpressionPtr> arguments; // of a dynamic field: its one expression
};
struct Chain {
    ExpressionPtr base;
    std::vector<Accessor> steps;
};

struct AnonymousFunction {
    std::vector<std::string> parameters; // "~" for one that is not used
    std::vector<std::string> names;      // every name in the body
    ExpressionPtr body;
    std::string text;
};
struct FunctionReference {
    std::string name;
};

struct Expression {
    Position position;
    int depth = 1; // of the tree below it
    std::variant<NumberLiteral, TextLiteral, Name, Colon, End, Unary, Binary, ShortCircuit, Range,
                 Matrix, Chain, AnonymousFunction, FunctionReference>
        node;
};

struct Statement;
using Block = std::vector<Statement>;

struct Evaluate {
    ExpressionPtr value;
    bool show;
};
struct Assign {
    std::vector<ExpressionPtr> targets; // a Name or a Chain on one; null for "~"
    ExpressionPtr value;
    bool show;
};
struct Branch {
    Position position;
    ExpressionPtr condition; // null for "else"
    Block body;
};
struct If {
    std::vector<Branch> branches;
};
struct While {
    ExpressionPtr condition;
    Block body;
};
struct For {
    std::string variable;
    ExpressionPtr range;
    Block body;
};
struct Try {
    Block body;
    std::string variable; // empty when the error isn't wanted
    Block handler;
};
struct Break {};
struct Continue {};

struct Statement {
    Position position;
    std::variant<Evaluate, Assign, If, While, For, Try, Break, Continue> node;
};

} // namespace velsh
