// Names of properties without regard to letter case.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace hbase::ustring {

// A byte that is no ASCII character.
class CtypeInvalidCharacter : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

} // namespace hbase::ustring

namespace axlink2 {

// The lower-case form of the first 1024 bytes of `text`, "A" to "Z" being all that changes. None
// when there is a byte above 127 among them.
std::optional<std::string> tryFoldName(std::string_view text);

// The same; raises `CtypeInvalidCharacter` for such a byte.
std::string foldName(std::string_view text);

} // namespace axlink2
