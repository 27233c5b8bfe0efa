// Two settings of the older sibling module.
#include "host/axlink.h"

#include <atomic>

namespace axlink {
namespace {

std::atomic<bool> singleDim{false};
std::atomic<bool> byRef{false};

} // namespace

unsigned char SafeArraySingleDim() { return singleDim ? 1 : 0; }
unsigned char PassSafeArrayByRef() { return byRef ? 1 : 0; }
void setSafeArraySingleDim(bool on) { singleDim = on; }
void setPassSafeArrayByRef(bool on) { byRef = on; }

} // namespace axlink
