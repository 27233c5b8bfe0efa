// Text by a format with %d, %s and their kin.
#include "shell/format.h"

#include "shell/convert.h"
#include "shell/numbers.h"

#include <cstdio>
#include <variant>
#include <vector>

namespace velsh {

namespace {

using Argument = std::variant<WideNumber, std::string>;

std::vector<Argument> flatten(std::span<const hxArray* const> arrays) {
    std::vector<Argument> arguments;
    for (const hxArray* array : arrays) {
        if (isText(array))
            arguments.emplace_back(narrowTextOf(array, "An argument"));
        else if (isNumberLike(array))
            forEachNumber(array, [&](std::size_t, WideNumber x) { arguments.emplace_back(x); });
        else
            raiseWrongType("A format takes numbers and text", array);
    }
    return arguments;
}

// "%-8.3f": what stands between "%" and the letter, and the letter.
struct Conversion {
    std::string options;
    char letter = 0;
};

template <class Number>
std::string printed(const std::string& format, Number number) {
    char small[128];
    const int size = std::snprintf(small, sizeof small, format.c_str(), number);
    if (size < static_cast<int>(sizeof small)) return small;
    std::string text(static_cast<std::size_t>(size) + 1, '\0');
    std::snprintf(text.data(), text.size(), format.c_str(), number);
    text.pop_back();
    return text;
}

bool isWhole(WideNumber value) { return value == std::floor(value) && std::fabs(value) < 1.8e19L; }

std::string formatNumber(const Conversion& conversion, WideNumber value) {
    const std::string start = "%" + conversion.options;
    const bool wantsInteger =
        std::string_view("diuxXo").find(conversion.letter) != std::string::npos;
    if (conversion.letter == 'c')
        return narrowTextOf(toChar(number(static_cast<double>(value)).get()).get(), "A character");
    if (conversion.letter == 's' || !std::isfinite(value)) {
        const std::string options = conversion.options.substr(0, conversion.options.find('.'));
        const std::string text = numberText(static_cast<double>(value));
        return printed("%" + options + "s", text.c_str());
    }
    if (!wantsInteger) return printed(start + conversion.letter, static_cast<double>(value));
    if (!isWhole(value)) return printed(start + "e", static_cast<double>(value));
    if (value > static_cast<WideNumber>(INT64_MAX))
        return printed(start + "llu", static_cast<unsigned long long>(value));
    const char letter = conversion.letter == 'u' && value < 0 ? 'd' : conversion.letter;
    return printed(start + "ll" + letter, velmar::convertNumber<std::int64_t>(value));
}

std::string formatArgument(const Conversion& conversion, const Argument& argument) {
    if (const auto* number = std::get_if<WideNumber>(&argument))
        return formatNumber(conversion, *number);
    const std::string& text = std::get<std::string>(argument);
    return printed("%" + conversion.options + "s", text.c_str());
}

class Formatter {
  public:
    Formatter(std::string_view format, std::vector<Argument> arguments)
        : format_(format), arguments_(std::move(arguments)) {}

    std::string run() {
        do {
            consumed_ = false;
            ended_ = false;
            for (at_ = 0; at_ < format_.size() && !ended_;)
                step();
        } while (consumed_ && next_ < arguments_.size());
        return std::move(text_);
    }

  private:
    void step() {
        const char c = format_[at_++];
        if (c == '\\' && at_ < format_.size())
            escape();
        else if (c == '%')
            convert();
        else
            text_ += c;
    }

    void escape() {
        const char c = format_[at_++];
        switch (c) {
        case 'n':
            text_ += '\n';
            break;
        case 't':
            text_ += '\t';
            break;
        case 'r':
            text_ += '\r';
            break;
        case '\\':
            text_ += '\\';
            break;
        default:
            (text_ += '\\') += c;
        }
    }

    void convert() {
        const std::size_t end = format_.find_first_not_of("-+ #0123456789.", at_);
        if (end == std::string_view::npos) raise("format", "The format ends within a conversion.");
        Conversion conversion{std::string(format_.substr(at_, end - at_)), format_[end]};
        at_ = end + 1;
        if (conversion.letter == '%') {
            text_ += '%';
            return;
        }
        if (std::string_view("diuxXofeEgGsc").find(conversion.letter) == std::string::npos)
            raise("format", std::string("\"%") + conversion.letter + "\" is no conversion.");
        if (conversion.options.size() > 8) raise("format", "A width of the format is too large.");
        if (next_ < arguments_.size()) {
            text_ += formatArgument(conversion, arguments_[next_++]);
            consumed_ = true;
        } else if (next_ > 0)
            ended_ = true; // nothing is left for this conversion: stop here
        // Without any arguments a conversion stands for nothing.
    }

    std::string_view format_;
    std::vector<Argument> arguments_;
    std::size_t at_ = 0;
    std::size_t next_ = 0;
    bool consumed_ = false;
    bool ended_ = false;
    std::string text_;
};

} // namespace

std::string formatText(std::string_view format, std::span<const hxArray* const> arguments) {
    return Formatter(format, flatten(arguments)).run();
}

} // namespace velsh
