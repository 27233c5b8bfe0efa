// Finding readable properties by the beginning of their names, whatever the letter case.
#pragma once

#include "host/class.h"

#include <optional>
#include <string>
#include <vector>

namespace axlink2 {

// What has been found for a name so far. An exact match beats everything, also what came before it;
// of several that only begin with the name none is meant.
class NameMatch {
  public:
    // Raises `CtypeInvalidCharacter`, as everything does that folds a name.
    explicit NameMatch(std::string_view text);

    const std::string wanted; // folded
    std::optional<std::string> exact;
    std::optional<std::string> partial; // the first one
    bool isAmbiguous = false;

    // Looks at one more property, unless there is an exact match already.
    void offer(const char* name);
    void addPartial(const std::string& name);
};

// The readable properties of one class, taken down once: a class keeps its members.
class ReadableNames {
  public:
    explicit ReadableNames(hos::HOSClass& owner);

    const std::vector<std::string>& inOrder() const { return names_; }
    // As if every one of them were offered in order.
    void offerAll(NameMatch& match) const;

  private:
    struct Folded {
        std::string text;
        std::size_t index;
        bool operator<(const Folded&) const;
    };

    std::vector<std::string> names_;
    std::vector<Folded> folded_; // sorted; those up to the first name that can't be folded
};

} // namespace axlink2
