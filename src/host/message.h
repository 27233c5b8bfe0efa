// Messages: a key of the catalogue with its arguments, and the catalogue that turns it into text.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace hmsgcore {

// A position or a count; text that the module holds as narrow text; text that came from the system
// or the catalogue.
using MessageArgument = std::variant<std::int64_t, std::string, std::u16string>;

// A message before it is text. One small class per key derives from it.
class BaseMsgID {
  public:
    virtual ~BaseMsgID() = default;

    std::vector<MessageArgument> arguments; // in catalogue order
    std::string component;                  // the catalogue, "VELMAR:COM"
    std::string key;                        // "numargs"

  protected:
    BaseMsgID(const char* component, const char* key, std::vector<MessageArgument> arguments = {})
        : arguments(std::move(arguments)), component(component), key(key) {}
    BaseMsgID(const BaseMsgID&) = default;
    BaseMsgID& operator=(const BaseMsgID&) = default;
};

} // namespace hmsgcore

namespace hsys::i18n {

// A locale of the host. There is one.
class HsysLocale {
  public:
    static const HsysLocale& global();
};

// The texts of all messages, from catalogue.txt.
class MessageCatalog {
  public:
    // The message's text with its arguments in place. A key that the catalogue lacks gives the
    // component, ":" and the key.
    static std::u16string get_message(const hmsgcore::BaseMsgID& message, const HsysLocale& locale);
};

} // namespace hsys::i18n

// Warns, and goes on. The identifier is component, ":" and key, or the one that is given.
void hxWarningMsgId(const hmsgcore::BaseMsgID& message);
void hxWarningMsgId(const std::string& identifier, const hmsgcore::BaseMsgID& message);
