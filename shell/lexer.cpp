// From text to tokens.
#include "shell/lexer.h"

#include "host/text.h"

#include <array>
#include <cctype>
#include <charconv>
#include <cmath>

namespace velsh {

namespace {

// Longer ones first: the first that fits is taken.
constexpr std::array<std::string_view, 29> symbols = {
    "==", "~=", "<=", ">=", "&&", "||", ".*", "./", ".^", "+", "-", "*", "/", "^", "<",
    ">",  "&",  "|",  "~",  "=",  ":",  ",",  ";",  "(",  ")", "[", "]", "{", "}"};

bool isLetter(char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0; }
bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isWordPart(char c) { return isLetter(c) || isDigit(c) || c == '_'; }
bool isHexDigit(char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; }

class Lexer {
  public:
    explicit Lexer(std::string_view text) : text_(text) {}

    std::vector<Token> run() {
        while (true) {
            bool space = skipBlanks();
            if (!tokens_.empty()) tokens_.back().spaceAfter = space;
            begin(space);
            if (at_ == text_.size()) break;
            readToken();
        }
        tokens_.push_back(token_);
        return std::move(tokens_);
    }

  private:
    char peek(std::size_t ahead = 0) const {
        return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0';
    }
    bool starts(std::string_view what) const { return text_.substr(at_).starts_with(what); }

    // Blanks, comments and continued lines; true when there was anything.
    bool skipBlanks() {
        const std::size_t from = at_;
        while (at_ < text_.size()) {
            if (peek() == ' ' || peek() == '\t' || peek() == '\r')
                ++at_;
            else if (peek() == '%')
                skipLine();
            else if (starts("...")) {
                skipLine();
                if (at_ < text_.size()) nextLine();
            } else
                break;
        }
        return at_ != from;
    }

    void skipLine() { at_ = std::min(text_.find('\n', at_), text_.size()); }

    void nextLine() {
        ++at_;
        ++line_;
        lineStart_ = at_;
    }

    Position here() const { return {line_, static_cast<int>(at_ - lineStart_) + 1}; }

    void begin(bool space) {
        token_ = Token();
        token_.position = here();
        token_.begin = token_.end = at_;
        token_.spaceBefore = space;
    }

    void finish(TokenKind kind) {
        token_.kind = kind;
        token_.end = at_;
        tokens_.push_back(std::move(token_));
    }

    [[noreturn]] void fail(const std::string& text) const {
        throw SyntaxError(token_.position, text);
    }

    void readToken() {
        const char c = peek();
        if (c == '\n') {
            nextLine();
            finish(TokenKind::Newline);
        } else if (isDigit(c) || (c == '.' && isDigit(peek(1))))
            readNumber();
        else if (isLetter(c))
            readName();
        else if (c == '\'' || c == '"')
            readText(c);
        else
            readSymbol();
    }

    void readName() {
        while (isWordPart(peek()))
            token_.name += text_[at_++];
        finish(TokenKind::Name);
    }

    void readNumber() {
        if (peek() == '0' && (peek(1) == 'x' || peek(1) == 'X'))
            readHex();
        else
            readDecimal();
        if (isWordPart(peek())) fail("A number can't be followed by a letter.");
        finish(TokenKind::Number);
    }

    void readHex() {
        at_ += 2;
        const std::size_t from = at_;
        while (isHexDigit(peek()))
            ++at_;
        std::uint64_t value = 0;
        auto [end, error] = std::from_chars(text_.data() + from, text_.data() + at_, value, 16);
        if (error != std::errc()) fail("A hexadecimal number has 1 to 16 digits.");
        token_.number = static_cast<double>(value);
    }

    void readDecimal() {
        const std::size_t from = at_;
        while (isDigit(peek()))
            ++at_;
        // "1.*x" is a product, not the number "1." and a star.
        const bool isOperator = peek(1) == '*' || peek(1) == '/' || peek(1) == '^';
        if (peek() == '.' && !isOperator && !starts("...")) {
            ++at_;
            while (isDigit(peek()))
                ++at_;
        }
        if (peek() == 'e' || peek() == 'E') {
            const std::size_t sign = peek(1) == '+' || peek(1) == '-' ? 1 : 0;
            if (!isDigit(peek(1 + sign))) fail("The exponent of the number is missing.");
            at_ += 1 + sign;
            while (isDigit(peek()))
                ++at_;
        }
        token_.number = std::strtod(std::string(text_.substr(from, at_ - from)).c_str(), nullptr);
    }

    // Whether a quote here would transpose what stands before it.
    bool isAfterOperand() const {
        if (tokens_.empty() || token_.spaceBefore) return false;
        const Token& last = tokens_.back();
        return last.kind == TokenKind::Name || last.kind == TokenKind::Number || last.is(")") ||
               last.is("]") || last.is("}");
    }

    void readText(char quote) {
        if (quote == '\'' && isAfterOperand())
            fail("Transposing with ' isn't part of the language.");
        std::string text;
        for (++at_;; ++at_) {
            if (at_ == text_.size() || peek() == '\n') fail("The text isn't ended on its line.");
            if (peek() == quote) {
                if (peek(1) != quote) break;
                ++at_;
            }
            text += peek();
        }
        ++at_;
        token_.text = hsys::i18n::to_ustring(text);
        finish(quote == '"' ? TokenKind::String : TokenKind::Char);
    }

    void readSymbol() {
        for (std::string_view symbol : symbols) {
            if (!starts(symbol)) continue;
            take(symbol);
            return;
        }
        if (peek() == '.' || peek() == '@') {
            take(text_.substr(at_, 1));
            return;
        }
        const bool printable = std::isprint(static_cast<unsigned char>(peek())) != 0;
        fail(printable ? std::string("The character ") + peek() + " has no meaning here."
                       : "This character has no meaning outside text and comments.");
    }

    void take(std::string_view symbol) {
        token_.name = symbol;
        at_ += symbol.size();
        finish(TokenKind::Symbol);
    }

    std::string_view text_;
    std::size_t at_ = 0;
    std::size_t lineStart_ = 0;
    int line_ = 1;
    Token token_;
    std::vector<Token> tokens_;
};

} // namespace

std::vector<Token> tokenize(std::string_view text) { return Lexer(text).run(); }

} // namespace velsh
