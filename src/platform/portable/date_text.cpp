// Reading and writing of dates.
#include "platform/portable/date_text.h"

#include "platform/portable/date_parts.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

using namespace std::chrono;

namespace {

constexpr std::array<std::string_view, 12> monthNames{
    "january", "february", "march",     "april",   "may",      "june",
    "july",    "august",   "september", "october", "november", "december"};
constexpr std::array<std::string_view, 7> dayNames{"sunday",   "monday", "tuesday", "wednesday",
                                                   "thursday", "friday", "saturday"};

struct Token {
    enum Kind { number, word, mark } kind;
    int value = 0;     // of a number
    std::string text;  // of a word, lower case
    char16_t sign = 0; // of a mark
};

bool isDigit(char16_t c) { return c >= u'0' && c <= u'9'; }
bool isLetter(char16_t c) { return (c | 0x20) >= u'a' && (c | 0x20) <= u'z'; }
bool isSpace(char16_t c) { return c == u' ' || (c >= u'\t' && c <= u'\r'); }

// Nothing for characters that no date has.
std::optional<std::vector<Token>> tokenize(std::u16string_view text) {
    std::vector<Token> tokens;
    for (std::size_t i = 0; i < text.size();) {
        if (isSpace(text[i])) {
            ++i;
        } else if (isDigit(text[i])) {
            constexpr int noPartOfADate = 100000;
            Token token{Token::number, 0, {}, 0};
            for (; i < text.size() && isDigit(text[i]); ++i)
                token.value = std::min(token.value * 10 + (text[i] - u'0'), noPartOfADate);
            tokens.push_back(std::move(token));
        } else if (isLetter(text[i])) {
            Token token{Token::word, 0, {}, 0};
            for (; i < text.size() && isLetter(text[i]); ++i)
                token.text += static_cast<char>(text[i] | 0x20);
            tokens.push_back(std::move(token));
        } else if (std::u16string_view(u"/-,:.").find(text[i]) != std::u16string_view::npos) {
            tokens.push_back({Token::mark, 0, {}, text[i++]});
        } else {
            return std::nullopt;
        }
    }
    return tokens;
}

// Position of the full name or of its first three letters.
template <std::size_t N>
std::optional<int> findName(const std::array<std::string_view, N>& names, std::string_view word) {
    for (std::size_t i = 0; i != N; ++i)
        if (word == names[i] || word == names[i].substr(0, 3)) return static_cast<int>(i);
    return std::nullopt;
}

int currentYear() {
    const auto today = floor<days>(system_clock::now());
    return static_cast<int>(year_month_day(today).year());
}

int fullYear(int value) { return value >= 100 ? value : value + (value < 50 ? 2000 : 1900); }

// Sorts the tokens into a time and the numbers and the month of a date.
class Reader {
  public:
    explicit Reader(std::vector<Token> tokens) : tokens_(std::move(tokens)) {}

    std::optional<DATE> read() {
        while (at_ != tokens_.size())
            if (!readItem()) return std::nullopt;
        if (afterMark_ || (numbers_.empty() && (month_ || !second_))) return std::nullopt;
        if (numbers_.empty()) return joinDate(dateEpoch, *second_);
        const auto day = resolveDay();
        if (!day || !day->ok() || day->year() < year(100) || day->year() > year(9999))
            return std::nullopt;
        return joinDate(sys_days(*day), second_.value_or(0));
    }

  private:
    const Token* peek(std::size_t ahead = 0) const {
        return at_ + ahead < tokens_.size() ? &tokens_[at_ + ahead] : nullptr;
    }
    bool markAhead(std::size_t ahead, std::u16string_view signs) const {
        const Token* token = peek(ahead);
        return token && token->kind == Token::mark &&
               signs.find(token->sign) != std::u16string_view::npos;
    }
    // Hours to add when the token says morning or afternoon.
    std::optional<int> halfDayAhead(std::size_t ahead) const {
        const Token* token = peek(ahead);
        if (!token || token->kind != Token::word) return std::nullopt;
        if (token->text == "am" || token->text == "a") return 0;
        if (token->text == "pm" || token->text == "p") return 12;
        return std::nullopt;
    }

    bool readItem() {
        const Token token = tokens_[at_];
        switch (token.kind) {
        case Token::number:
            if (markAhead(1, u":.") || halfDayAhead(1)) return !afterMark_ && readTime();
            numbers_.push_back(token.value);
            break;
        case Token::word:
            if (const auto month = findName(monthNames, token.text); month && !month_)
                month_ = *month + 1;
            else if (!findName(dayNames, token.text))
                return false;
            break;
        case Token::mark: // between two parts of a date only
            if (!markAhead(0, u"/-,") || !afterDatePart_) return false;
            break;
        }
        afterMark_ = token.kind == Token::mark;
        afterDatePart_ = !afterMark_;
        ++at_;
        return true;
    }

    bool readTime() {
        std::array<int, 3> parts{}; // hours, minutes, seconds
        std::size_t count = 0;
        for (;; ++at_) {
            const Token* token = peek();
            if (count == parts.size() || !token || token->kind != Token::number) return false;
            parts[count++] = token->value;
            ++at_;
            if (!markAhead(0, u":.")) break;
        }
        if (const auto half = halfDayAhead(0)) {
            if (parts[0] > 12) return false;
            parts[0] = parts[0] % 12 + *half;
            ++at_;
        } else if (count == 1) {
            return false;
        }
        if (second_ || parts[0] > 23 || parts[1] > 59 || parts[2] > 59) return false;
        second_ = parts[0] * 3600 + parts[1] * 60 + parts[2];
        afterDatePart_ = false;
        return true;
    }

    std::optional<year_month_day> resolveDay() const {
        const auto make = [](int y, int m, int d) -> year_month_day {
            return year(fullYear(y)) / month(static_cast<unsigned>(m)) /
                   day(static_cast<unsigned>(d));
        };
        const auto isYear = [](int value) { return value > 31; };
        const auto& n = numbers_;
        if (month_) {
            if (n.size() == 1 && isYear(n[0])) return make(n[0], *month_, 1);
            if (n.size() == 1) return make(currentYear(), *month_, n[0]);
            if (n.size() == 2)
                return isYear(n[0]) ? make(n[0], *month_, n[1]) : make(n[1], *month_, n[0]);
            return std::nullopt;
        }
        if (n.size() == 2 && isYear(n[1])) return make(n[1], n[0], 1);
        if (n.size() == 2 && isYear(n[0])) return make(n[0], n[1], 1);
        if (n.size() == 2) return monthFirst(currentYear(), n[0], n[1], make);
        if (n.size() == 3 && isYear(n[0])) return monthFirst(n[0], n[1], n[2], make);
        if (n.size() == 3) return monthFirst(n[2], n[0], n[1], make);
        return std::nullopt;
    }

    // The month comes first unless only the other number can be one.
    template <class Make>
    static year_month_day monthFirst(int y, int first, int second, Make make) {
        return first > 12 ? make(y, second, first) : make(y, first, second);
    }

    std::vector<Token> tokens_;
    std::size_t at_ = 0;
    std::vector<int> numbers_;
    std::optional<int> month_;
    std::optional<int> second_; // of the day
    bool afterMark_ = false;
    bool afterDatePart_ = false;
};

std::string twoDigits(int value) {
    return {static_cast<char>('0' + value / 10), static_cast<char>('0' + value % 10)};
}

} // namespace

HRESULT readDate(std::u16string_view text, DATE& date) {
    auto tokens = tokenize(text);
    const auto read = tokens ? Reader(std::move(*tokens)).read() : std::nullopt;
    if (!read) return DISP_E_TYPEMISMATCH;
    date = *read;
    return S_OK;
}

HRESULT dateToText(DATE date, std::string& text) {
    const auto parts = splitDate(date);
    if (!parts) return E_INVALIDARG;
    text.clear();
    const bool hasDay = sys_days(parts->day) != dateEpoch;
    if (hasDay)
        text = std::to_string(static_cast<unsigned>(parts->day.month())) + '/' +
               std::to_string(static_cast<unsigned>(parts->day.day())) + '/' +
               std::to_string(static_cast<int>(parts->day.year()));
    if (hasDay && date == std::trunc(date)) return S_OK;
    const int hour = parts->second / 3600;
    if (hasDay) text += ' ';
    text += std::to_string(hour % 12 == 0 ? 12 : hour % 12) + ':' +
            twoDigits(parts->second / 60 % 60) + ':' + twoDigits(parts->second % 60) +
            (hour < 12 ? " AM" : " PM");
    return S_OK;
}
