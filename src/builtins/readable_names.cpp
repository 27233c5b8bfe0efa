// Matching one name, and many at once.
#include "builtins/readable_names.h"

#include "builtins/fold_name.h"
#include "builtins/property_lookup.h"

#include <algorithm>
#include <tuple>

namespace axlink2 {

NameMatch::NameMatch(std::string_view text) : wanted(foldName(text)) {}

void NameMatch::offer(const char* name) {
    if (exact) return;
    const std::string candidate = foldName(name);
    if (candidate == wanted)
        exact = name;
    else if (candidate.starts_with(wanted))
        addPartial(name);
}

void NameMatch::addPartial(const std::string& name) {
    if (partial)
        isAmbiguous = true;
    else
        partial = name;
}

bool ReadableNames::Folded::operator<(const Folded& other) const {
    return std::tie(text, index) < std::tie(other.text, other.index);
}

ReadableNames::ReadableNames(hos::HOSClass& owner) : names_(namesOf(readableProperties(owner))) {
    for (std::size_t i = 0; i < names_.size(); ++i) {
        auto text = tryFoldName(names_[i]);
        if (!text) break;
        folded_.push_back({*std::move(text), i});
    }
    std::ranges::sort(folded_, std::less<>());
}

void ReadableNames::offerAll(NameMatch& match) const {
    const auto first = std::ranges::lower_bound(folded_, Folded{match.wanted, 0}, std::less<>());
    if (first != folded_.end() && first->text == match.wanted) {
        match.exact = names_[first->index];
        return;
    }
    if (folded_.size() < names_.size()) return match.offer(names_[folded_.size()].c_str());
    std::vector<std::size_t> partial;
    for (auto at = first; at != folded_.end() && at->text.starts_with(match.wanted); ++at)
        partial.push_back(at->index);
    std::ranges::sort(partial);
    for (const std::size_t index : partial)
        match.addPartial(names_[index]);
}

} // namespace axlink2
