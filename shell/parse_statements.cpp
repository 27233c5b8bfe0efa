// Statements of the language.
#include "shell/parser.h"

#include <algorithm>

namespace velsh {

namespace {

constexpr int maxNesting = 100;

// Words of a larger language that programs may well try.
constexpr std::string_view unsupportedWords[] = {"function",  "switch",     "case",
                                                 "otherwise", "return",     "global",
                                                 "classdef",  "persistent", "parfor"};

} // namespace

const std::vector<std::string>& keywords() {
    static const std::vector<std::string> words = {"if",    "elseif", "else",     "end", "for",
                                                   "while", "break",  "continue", "try", "catch"};
    return words;
}

Block parse(std::string_view text) { return Parser(text).parseProgram(); }

Parser::Nesting::Nesting(Parser& parser) : parser_(parser) {
    if (parser.nesting_ >= maxNesting) parser.fail("The program is nested too deeply.");
    ++parser.nesting_;
}

bool Parser::accept(std::string_view symbol) {
    if (!current().is(symbol)) return false;
    ++at_;
    return true;
}

bool Parser::acceptWord(std::string_view word) {
    if (!current().isName(word)) return false;
    ++at_;
    return true;
}

void Parser::expect(std::string_view symbol, const char* purpose) {
    if (!accept(symbol)) failAtCurrent("'" + std::string(symbol) + "' " + purpose);
}

bool Parser::isKeyword() const {
    return current().kind == TokenKind::Name &&
           std::find(keywords().begin(), keywords().end(), current().name) != keywords().end();
}

bool Parser::isStatementEnd() const {
    return current().kind == TokenKind::Newline || current().kind == TokenKind::End ||
           current().is(";") || current().is(",");
}

void Parser::fail(const std::string& text) const {
    throw SyntaxError(current().position, text, current().kind == TokenKind::End);
}

void Parser::failAtCurrent(const std::string& wanted) const {
    const Token& token = current();
    std::string found = token.kind == TokenKind::End ? "the end of the program"
                        : token.kind == TokenKind::Newline
                            ? "the end of the line"
                            : std::string(text_.substr(token.begin, token.end - token.begin));
    if (token.kind != TokenKind::End && token.kind != TokenKind::Newline)
        found = "\"" + found + "\"";
    fail("Expected " + wanted + ", found " + found + ".");
}

Block Parser::parseProgram() {
    Block block = parseBlock({});
    if (current().kind != TokenKind::End)
        fail("'" + current().name + "' has no block that it belongs to.");
    return block;
}

Block Parser::parseBlock(std::initializer_list<std::string_view> ends) {
    Nesting nesting(*this);
    Block block;
    for (skipSeparators(); current().kind != TokenKind::End; skipSeparators()) {
        const Token& token = current();
        if (token.kind == TokenKind::Name &&
            (std::find(ends.begin(), ends.end(), token.name) != ends.end() || token.name == "end"))
            break;
        block.push_back(parseStatement());
    }
    return block;
}

void Parser::skipSeparators() {
    while (isStatementEnd() && current().kind != TokenKind::End)
        ++at_;
}

bool Parser::finishStatement() {
    if (!isStatementEnd()) failAtCurrent("the end of the statement");
    return !current().is(";");
}

void Parser::expectBlockEnd(const char* block, Position start) {
    if (!acceptWord("end"))
        failAtCurrent("'end' of the '" + std::string(block) + "' in line " +
                      std::to_string(start.line));
}

Statement Parser::parseStatement() {
    const Position position = current().position;
    if (current().kind == TokenKind::Name) {
        for (std::string_view word : unsupportedWords)
            if (current().name == word)
                fail("'" + std::string(word) + "' isn't part of the language.");
        if (acceptWord("if")) return parseIf();
        if (acceptWord("while")) return parseWhile();
        if (acceptWord("for")) return parseFor();
        if (acceptWord("try")) return parseTry();
        if (current().isName("break") || current().isName("continue")) return parseJump(position);
        if (isKeyword()) fail("'" + current().name + "' has no block that it belongs to.");
    }
    return parseSimple();
}

Statement Parser::parseIf() {
    const Position position = previous().position;
    If statement;
    ExpressionPtr condition = parseExpression();
    statement.branches.push_back({position, condition, parseBlock({"elseif", "else"})});
    while (acceptWord("elseif")) {
        const Position at = previous().position;
        condition = parseExpression();
        statement.branches.push_back({at, condition, parseBlock({"elseif", "else"})});
    }
    if (acceptWord("else"))
        statement.branches.push_back({previous().position, nullptr, parseBlock({})});
    expectBlockEnd("if", position);
    return {position, std::move(statement)};
}

Statement Parser::parseWhile() {
    const Position position = previous().position;
    ExpressionPtr condition = parseExpression();
    Scoped loop(inLoop_, true);
    While statement{std::move(condition), parseBlock({})};
    expectBlockEnd("while", position);
    return {position, std::move(statement)};
}

Statement Parser::parseFor() {
    const Position position = previous().position;
    const bool hasParens =
        current().is("(") && tokens_[at_ + 1].kind == TokenKind::Name && tokens_[at_ + 2].is("=");
    if (hasParens) ++at_;
    For statement;
    statement.variable = parseVariable();
    expect("=", "behind the variable of 'for'");
    statement.range = parseExpression();
    if (hasParens) expect(")", "behind the range of 'for'");
    Scoped loop(inLoop_, true);
    statement.body = parseBlock({});
    expectBlockEnd("for", position);
    return {position, std::move(statement)};
}

Statement Parser::parseJump(Position position) {
    if (!inLoop_) fail("'" + current().name + "' has no loop that it belongs to.");
    const bool isBreak = tokens_[at_++].name == "break";
    finishStatement();
    if (isBreak) return {position, Break()};
    return {position, Continue()};
}

Statement Parser::parseTry() {
    const Position position = previous().position;
    Try statement;
    statement.body = parseBlock({"catch"});
    if (acceptWord("catch")) {
        const bool sameLine = current().position.line == previous().position.line;
        if (sameLine && current().kind == TokenKind::Name && !isKeyword()) {
            const TokenKind next = tokens_[at_ + 1].kind;
            if (next == TokenKind::Newline || next == TokenKind::End || tokens_[at_ + 1].is(";") ||
                tokens_[at_ + 1].is(","))
                statement.variable = parseVariable();
        }
        statement.handler = parseBlock({});
    }
    expectBlockEnd("try", position);
    return {position, std::move(statement)};
}

std::string Parser::parseVariable() {
    if (current().kind != TokenKind::Name || isKeyword()) failAtCurrent("the name of a variable");
    return tokens_[at_++].name;
}

Statement Parser::parseSimple() {
    const Position position = current().position;
    if (isTargetList()) {
        Assign statement;
        statement.targets = parseTargetList();
        statement.value = parseExpression();
        statement.show = finishStatement();
        return {position, std::move(statement)};
    }
    ExpressionPtr value = parseExpression();
    if (accept("=")) {
        Assign statement;
        statement.targets.push_back(checkTarget(std::move(value)));
        statement.value = parseExpression();
        statement.show = finishStatement();
        return {position, std::move(statement)};
    }
    const bool show = finishStatement();
    return {position, Evaluate{std::move(value), show}};
}

// Whether a bracket here holds the targets of "[a, b] = ...".
bool Parser::isTargetList() const {
    if (!current().is("[")) return false;
    int depth = 0;
    for (std::size_t i = at_; tokens_[i].kind != TokenKind::End; ++i) {
        const Token& token = tokens_[i];
        if (token.is("[") || token.is("(") || token.is("{")) ++depth;
        if (token.is("]") || token.is(")") || token.is("}")) --depth;
        if (depth == 0) return tokens_[i + 1].is("=");
        if (token.kind == TokenKind::Newline) return false;
    }
    return false;
}

std::vector<ExpressionPtr> Parser::parseTargetList() {
    std::vector<ExpressionPtr> targets;
    expect("[", "before the targets");
    Scoped matrix(inMatrix_, true);
    while (!accept("]")) {
        if (accept("~"))
            targets.push_back(nullptr);
        else
            targets.push_back(checkTarget(parsePostfix()));
        if (!current().is("]")) accept(",");
    }
    if (targets.empty()) fail("The list of variables to assign to is empty.");
    expect("=", "behind the targets");
    return targets;
}

ExpressionPtr Parser::checkTarget(ExpressionPtr target) const {
    const Expression* base = target.get();
    if (auto* chain = std::get_if<Chain>(&base->node)) base = chain->base.get();
    if (!std::holds_alternative<Name>(base->node))
        throw SyntaxError(target->position,
                          "Only a variable, or a part of one, can be assigned to.");
    return target;
}

} // namespace velsh
