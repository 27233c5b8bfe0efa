// Nothing counts until a run is under way.
#include "torture/points.h"

#include <utility>

namespace torture {

namespace {

// Fronts nest, and so does what they do for themselves.
int ownWork = 0;
bool countedOutside = false;

void noteOwnWork(bool begins) {
    if (begins && ownWork++ == 0) countedOutside = std::exchange(anyMemory.counting, false);
    if (!begins && --ownWork == 0) anyMemory.counting = countedOutside;
}

} // namespace

constinit FaultPlan functionCalls{.counting = false, .onOwnWork = noteOwnWork};
constinit FaultPlan serverCalls{.counting = false, .onOwnWork = noteOwnWork};
constinit FaultPlan comMemory{.counting = false};
constinit FaultPlan anyMemory{.counting = false};

} // namespace torture
