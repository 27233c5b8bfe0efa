// From text to a program.
#pragma once

#include "shell/ast.h"
#include "shell/lexer.h"

#include <string>
#include <string_view>
#include <vector>

namespace velsh {

// The statements of a program. Raises SyntaxError.
Block parse(std::string_view text);

// The words that can't name a variable.
const std::vector<std::string>& keywords();

class Parser {
  public:
    explicit Parser(std::string_view text) : text_(text), tokens_(tokenize(text)) {}

    Block parseProgram();

  private:
    // One level of recursion, refused when there are too many.
    class Nesting {
      public:
        explicit Nesting(Parser& parser);
        ~Nesting() { --parser_.nesting_; }

      private:
        Parser& parser_;
    };
    // Changes a member for a scope.
    template <class T>
    class Scoped {
      public:
        Scoped(T& member, T value) : member_(member), old_(std::exchange(member, value)) {}
        ~Scoped() { member_ = old_; }

      private:
        T& member_;
        T old_;
    };

    // Tokens.
    const Token& current() const { return tokens_[at_]; }
    const Token& previous() const { return tokens_[at_ - 1]; }
    bool accept(std::string_view symbol);
    void expect(std::string_view symbol, const char* purpose);
    bool acceptWord(std::string_view word);
    bool isKeyword() const;
    bool isStatementEnd() const;
    [[noreturn]] void fail(const std::string& text) const;
    [[noreturn]] void failAtCurrent(const std::string& wanted) const;

    // Statements.
    Block parseBlock(std::initializer_list<std::string_view> ends);
    Statement parseStatement();
    Statement parseIf();
    Statement parseWhile();
    Statement parseFor();
    Statement parseTry();
    Statement parseJump(Position position);
    Statement parseSimple();
    bool isTargetList() const;
    std::vector<ExpressionPtr> parseTargetList();
    ExpressionPtr checkTarget(ExpressionPtr target) const;
    std::string parseVariable();
    void skipSeparators();
    bool finishStatement(); // whether its value is shown
    void expectBlockEnd(const char* block, Position start);

    // Expressions.
    ExpressionPtr parseExpression();
    ExpressionPtr parseBinary(std::size_t level);
    ExpressionPtr parseRange();
    ExpressionPtr parseUnary();
    ExpressionPtr parsePower();
    ExpressionPtr parsePostfix();
    ExpressionPtr parsePrimary();
    ExpressionPtr parseWord();
    ExpressionPtr parseMatrix(bool isCell);
    ExpressionPtr parseFunction();
    Accessor parseField();
    std::vector<ExpressionPtr> parseArguments(std::string_view close);
    bool startsElement() const;
    bool isElementEnd() const;

    template <class Node>
    ExpressionPtr make(Position position, int childDepth, Node node) const;

    std::string_view text_;
    std::vector<Token> tokens_;
    std::size_t at_ = 0;
    int nesting_ = 0;
    bool inLoop_ = false;
    bool inMatrix_ = false;                     // blanks separate elements
    bool inSubscript_ = false;                  // "end" is a value
    std::vector<std::string>* names_ = nullptr; // of the anonymous function being read
};

} // namespace velsh
