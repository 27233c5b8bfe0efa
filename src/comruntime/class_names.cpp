// The replacements between ProgIDs and class names; their order matters.
#include "comruntime/class_names.h"

#include <boost/algorithm/string/replace.hpp>

#include <span>

namespace axlink2 {
namespace {

struct Replacement {
    const char* found;
    const char* replacedBy;
};

// Keeps the doubled underscore apart from the single one while the latter is replaced.
constexpr const char* marker = "TAXSPHACKONUNDERSCORE";

constexpr Replacement encoding[] = {
    {"_", "__"}, {"-", "___"}, {".", "_"}, {" ", "____"}, {"&", "_____"},
};

constexpr Replacement decoding[] = {
    {"_____", "&"}, {"____", " "}, {"___", "-"}, {"__", marker}, {"_", "."}, {marker, "_"},
};

std::string replaced(std::string text, std::span<const Replacement> replacements) {
    for (const auto& [found, replacedBy] : replacements)
        boost::algorithm::replace_all(text, found, replacedBy);
    return text;
}

} // namespace

std::string encodeClassName(const std::string& progId) { return replaced(progId, encoding); }

std::string decodeClassName(const std::string& className) { return replaced(className, decoding); }

} // namespace axlink2
