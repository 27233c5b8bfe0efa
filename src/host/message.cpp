// Messages to text, by the catalogue.
#include "host/message.h"

#include "host/catalogue_text.h"
#include "host/exception.h"
#include "platform/text.h"

#include <string_view>
#include <unordered_map>

namespace hsys::i18n {
namespace {

// An argument as a message shows it.
struct Shown {
    std::u16string operator()(std::int64_t number) const {
        return platform::utf16FromUtf8(std::to_string(number));
    }
    std::u16string operator()(const std::string& narrow) const {
        return platform::utf16FromUtf8(narrow);
    }
    std::u16string operator()(const std::u16string& wide) const { return wide; }
};

std::u16string unescaped(std::string_view text) {
    std::string result;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const bool isLineFeed = text.substr(at, 2) == "\\n";
        result += isLineFeed ? '\n' : text[at];
        at += isLineFeed ? 1 : 0;
    }
    return platform::utf16FromUtf8(result);
}

using Texts = std::unordered_map<std::string, std::u16string>;

Texts readCatalogue(std::string_view rest) {
    Texts texts;
    while (!rest.empty()) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        const std::size_t blank = line.find(' ');
        if (line.empty() || line[0] == '#' || blank == std::string_view::npos) continue;
        texts.emplace(line.substr(0, blank), unescaped(line.substr(blank + 1)));
    }
    return texts;
}

// What stands behind a key that has a text of its own for this kind of first argument.
const char* variantOf(const hmsgcore::BaseMsgID& message) {
    if (message.arguments.empty()) return "";
    const hmsgcore::MessageArgument& first = message.arguments.front();
    if (std::holds_alternative<std::string>(first)) return "@name";
    return first == hmsgcore::MessageArgument(std::int64_t{0}) ? "@0" : "";
}

const Texts& catalogue() {
    static const Texts& texts = *new Texts(readCatalogue(velmar::catalogueText));
    return texts;
}

} // namespace

const HsysLocale& HsysLocale::global() {
    static const HsysLocale locale;
    return locale;
}

std::u16string MessageCatalog::get_message(const hmsgcore::BaseMsgID& message, const HsysLocale&) {
    const std::string key = message.component + ":" + message.key;
    auto found = catalogue().find(key + variantOf(message));
    if (found == catalogue().end()) found = catalogue().find(key);
    if (found == catalogue().end()) return platform::utf16FromUtf8(key);
    const std::u16string& text = found->second;
    std::u16string result;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const bool isPlace = text[at] == u'{' && at + 2 < text.size() && text[at + 1] >= u'1' &&
                             text[at + 1] <= u'9' && text[at + 2] == u'}';
        if (!isPlace) {
            result += text[at];
            continue;
        }
        const auto number = static_cast<std::size_t>(text[at + 1] - u'1');
        if (number < message.arguments.size())
            result += std::visit(Shown(), message.arguments[number]);
        at += 2;
    }
    return result;
}

} // namespace hsys::i18n

std::string hbase::core::except::narrowMessageText(const hmsgcore::BaseMsgID& message) {
    using namespace hsys::i18n;
    return platform::utf8FromUtf16(MessageCatalog::get_message(message, HsysLocale::global()));
}
