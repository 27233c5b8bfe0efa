// Expressions of the language.
#include "shell/parser.h"

#include <algorithm>

namespace velsh {

namespace {

// How deep the tree of an expression may be; evaluating and ending it goes down that far.
constexpr int maxDepth = 300;
constexpr std::size_t maxSteps = 100;

struct BinaryRule {
    std::string_view symbol;
    std::size_t level; // the higher, the closer it binds
    BinaryOperator operation;
};
constexpr std::size_t andAndLevel = 1;
constexpr std::size_t rangeLevel = 5;
constexpr std::size_t unaryLevel = 8;
constexpr BinaryRule binaryRules[] = {
    {"|", 2, BinaryOperator::Or},           {"&", 3, BinaryOperator::And},
    {"==", 4, BinaryOperator::Equal},       {"~=", 4, BinaryOperator::NotEqual},
    {"<", 4, BinaryOperator::Less},         {"<=", 4, BinaryOperator::LessEqual},
    {">", 4, BinaryOperator::Greater},      {">=", 4, BinaryOperator::GreaterEqual},
    {"+", 6, BinaryOperator::Add},          {"-", 6, BinaryOperator::Subtract},
    {"*", 7, BinaryOperator::Multiply},     {"/", 7, BinaryOperator::Divide},
    {".*", 7, BinaryOperator::DotMultiply}, {"./", 7, BinaryOperator::DotDivide},
};

const BinaryRule* findRule(const Token& token, std::size_t level) {
    for (const BinaryRule& rule : binaryRules)
        if (rule.level == level && token.is(rule.symbol)) return &rule;
    return nullptr;
}

int depthOf(const std::vector<ExpressionPtr>& expressions) {
    int depth = 0;
    for (const ExpressionPtr& expression : expressions)
        depth = std::max(depth, expression->depth);
    return depth;
}

} // namespace

template <class Node>
ExpressionPtr Parser::make(Position position, int childDepth, Node node) const {
    if (childDepth >= maxDepth) throw SyntaxError(position, "The expression is nested too deeply.");
    return std::make_shared<const Expression>(
        Expression{position, childDepth + 1, std::move(node)});
}

ExpressionPtr Parser::parseExpression() {
    Nesting nesting(*this);
    ExpressionPtr left = parseBinary(andAndLevel);
    while (accept("||")) {
        const Position position = previous().position;
        ExpressionPtr right = parseBinary(andAndLevel);
        const int depth = std::max(left->depth, right->depth);
        left = make(position, depth, ShortCircuit{false, std::move(left), std::move(right)});
    }
    return left;
}

// In "[1 -2]" the minus belongs to a new element; in "[1 - 2]" and "[1-2]" it doesn't.
bool Parser::startsElement() const {
    return inMatrix_ && current().spaceBefore && !current().spaceAfter &&
           (current().is("+") || current().is("-"));
}

ExpressionPtr Parser::parseBinary(std::size_t level) {
    if (level == rangeLevel) return parseRange();
    if (level == unaryLevel) return parseUnary();
    ExpressionPtr left = parseBinary(level + 1);
    while (true) {
        const BinaryRule* rule = findRule(current(), level);
        const bool isAndAnd = level == andAndLevel && current().is("&&");
        if ((!rule && !isAndAnd) || startsElement()) return left;
        const Position position = tokens_[at_++].position;
        ExpressionPtr right = parseBinary(level + 1);
        const int depth = std::max(left->depth, right->depth);
        if (rule)
            left =
                make(position, depth, Binary{rule->operation, std::move(left), std::move(right)});
        else
            left = make(position, depth, ShortCircuit{true, std::move(left), std::move(right)});
    }
}

ExpressionPtr Parser::parseRange() {
    std::vector<ExpressionPtr> parts = {parseBinary(rangeLevel + 1)};
    const Position position = current().position;
    while (parts.size() < 3 && accept(":"))
        parts.push_back(parseBinary(rangeLevel + 1));
    if (parts.size() == 1) return parts[0];
    return make(position, depthOf(parts),
                Range{parts.front(), parts.size() == 3 ? parts[1] : nullptr, parts.back()});
}

ExpressionPtr Parser::parseUnary() {
    static constexpr std::pair<std::string_view, UnaryOperator> rules[] = {
        {"-", UnaryOperator::Minus}, {"+", UnaryOperator::Plus}, {"~", UnaryOperator::Not}};
    for (const auto& [symbol, operation] : rules) {
        if (!accept(symbol)) continue;
        Nesting nesting(*this);
        const Position position = previous().position;
        ExpressionPtr operand = parseUnary();
        const int depth = operand->depth;
        return make(position, depth, Unary{operation, std::move(operand)});
    }
    return parsePower();
}

ExpressionPtr Parser::parsePower() {
    ExpressionPtr left = parsePostfix();
    while (current().is("^") || current().is(".^")) {
        const Token& token = tokens_[at_++];
        // The exponent may have a sign, which binds closer than the next power: 2^-1^2 is (2^-1)^2.
        ExpressionPtr right;
        if (current().is("-") || current().is("+") || current().is("~")) {
            Nesting nesting(*this);
            const Token& sign = tokens_[at_++];
            ExpressionPtr operand = parsePostfix();
            const int depth = operand->depth;
            right = make(sign.position, depth,
                         Unary{sign.is("-")   ? UnaryOperator::Minus
                               : sign.is("+") ? UnaryOperator::Plus
                                              : UnaryOperator::Not,
                               std::move(operand)});
        } else
            right = parsePostfix();
        const int depth = std::max(left->depth, right->depth);
        left = make(token.position, depth,
                    Binary{token.is("^") ? BinaryOperator::Power : BinaryOperator::DotPower,
                           std::move(left), std::move(right)});
    }
    return left;
}

ExpressionPtr Parser::parsePostfix() {
    ExpressionPtr base = parsePrimary();
    Chain chain{base, {}};
    int depth = base->depth;
    while (!(inMatrix_ && current().spaceBefore)) {
        if (accept("("))
            chain.steps.push_back({Accessor::Kind::Paren, {}, parseArguments(")")});
        else if (accept("{"))
            chain.steps.push_back({Accessor::Kind::Brace, {}, parseArguments("}")});
        else if (accept("."))
            chain.steps.push_back(parseField());
        else
            break;
        depth = std::max(depth, depthOf(chain.steps.back().arguments));
        if (chain.steps.size() > maxSteps) fail("The expression is nested too deeply.");
    }
    if (chain.steps.empty()) return base;
    const Position position = base->position;
    return make(position, depth, std::move(chain));
}

Accessor Parser::parseField() {
    if (accept("(")) {
        Scoped matrix(inMatrix_, false);
        std::vector<ExpressionPtr> name = {parseExpression()};
        expect(")", "behind the name of the field");
        return {Accessor::Kind::DynamicField, {}, std::move(name)};
    }
    if (current().kind != TokenKind::Name) failAtCurrent("the name of a member");
    return {
        Accessor::Kind::Field, hos::internal::makeInterned(std::string(tokens_[at_++].name)), {}};
}

std::vector<ExpressionPtr> Parser::parseArguments(std::string_view close) {
    Scoped matrix(inMatrix_, false);
    Scoped subscript(inSubscript_, true);
    std::vector<ExpressionPtr> arguments;
    if (accept(close)) return arguments;
    do {
        const Token& next = tokens_[std::min(at_ + 1, tokens_.size() - 1)];
        if (current().is(":") && (next.is(",") || next.is(close)))
            arguments.push_back(make(tokens_[at_++].position, 0, Colon()));
        else
            arguments.push_back(parseExpression());
    } while (accept(","));
    expect(close, "behind the arguments");
    return arguments;
}

ExpressionPtr Parser::parsePrimary() {
    const Token& token = current();
    switch (token.kind) {
    case TokenKind::Number:
        ++at_;
        return make(token.position, 0, NumberLiteral{token.number});
    case TokenKind::Char:
    case TokenKind::String:
        ++at_;
        return make(token.position, 0, TextLiteral{token.text, token.kind == TokenKind::String});
    case TokenKind::Name:
        return parseWord();
    default:
        break;
    }
    if (accept("(")) {
        Scoped matrix(inMatrix_, false);
        ExpressionPtr inner = parseExpression();
        expect(")", "behind the expression");
        return inner;
    }
    if (accept("[")) return parseMatrix(false);
    if (accept("{")) return parseMatrix(true);
    if (accept("@")) return parseFunction();
    failAtCurrent("a value");
}

ExpressionPtr Parser::parseWord() {
    const Token& token = current();
    if (token.name == "end" && inSubscript_) {
        ++at_;
        return make(token.position, 0, End());
    }
    if (isKeyword()) failAtCurrent("a value");
    ++at_;
    if (names_) names_->push_back(token.name);
    return make(token.position, 0, Name{token.name});
}

bool Parser::isElementEnd() const {
    return current().is(",") || current().is(";") || current().is("]") || current().is("}") ||
           current().kind == TokenKind::Newline || current().kind == TokenKind::End;
}

ExpressionPtr Parser::parseMatrix(bool isCell) {
    const Position position = previous().position;
    const std::string_view close = isCell ? "}" : "]";
    Scoped matrix(inMatrix_, true);
    Matrix node{isCell, {}};
    std::vector<ExpressionPtr> row;
    int depth = 0;
    auto endRow = [&] {
        if (!row.empty()) node.rows.push_back(std::move(row));
        row.clear();
    };
    while (!accept(close)) {
        if (accept(";"))
            endRow();
        else if (current().kind == TokenKind::Newline) {
            ++at_;
            endRow();
        } else if (accept(",")) {
            if (row.empty()) fail("A row can't begin with a comma.");
            while (current().kind == TokenKind::Newline)
                ++at_;
            if (isElementEnd() && !current().is(close)) failAtCurrent("a value");
        } else {
            row.push_back(parseExpression());
            depth = std::max(depth, row.back()->depth);
            if (!isElementEnd() && !current().spaceBefore)
                failAtCurrent("'" + std::string(close) + "' or the next element");
        }
    }
    endRow();
    return make(position, depth, std::move(node));
}

ExpressionPtr Parser::parseFunction() {
    const Token& start = previous();
    if (!accept("(")) {
        if (current().kind != TokenKind::Name || isKeyword())
            failAtCurrent("'(' or the name of a function behind '@'");
        return make(start.position, 0, FunctionReference{tokens_[at_++].name});
    }
    AnonymousFunction function;
    while (!accept(")")) {
        function.parameters.push_back(accept("~") ? "~" : parseVariable());
        if (!current().is(")")) expect(",", "between parameters");
    }
    std::vector<std::string> names;
    {
        Scoped collecting(names_, &names);
        Scoped subscript(inSubscript_, false);
        function.body = parseExpression();
    }
    if (names_) names_->insert(names_->end(), names.begin(), names.end());
    function.names = std::move(names);
    function.text = text_.substr(start.begin, previous().end - start.begin);
    const int depth = function.body->depth;
    return make(start.position, depth, std::move(function));
}

} // namespace velsh
