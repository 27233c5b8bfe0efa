// The limit on how deep evaluation may go.
#include "shell/recursion.h"

#include "shell/value.h"

namespace velsh {

namespace {

// A level takes a few KiB of the stack in the slowest builds.
constexpr int limit = 800;
int depth = 0; // programs run on one thread

} // namespace

Recursion::Recursion(int weight) : weight_(weight) {
    if (depth + weight > limit)
        raise("toodeep", "The functions call each other, or are nested, too deeply.");
    depth += weight;
}

Recursion::~Recursion() { depth -= weight_; }

} // namespace velsh
