// Faults on purpose: what a client must survive.
#pragma once

namespace sample {

void writeThroughNull();
void divideByZero();
void callBadPointer();
[[noreturn]] void throwException();

} // namespace sample
