// The tests' support on Windows.
#include "system_support.h"

#include <cstdlib>

namespace platform {

const char* const userDataVariable = "LOCALAPPDATA";

void expectDescriptionsOut(int) {}

void setVariable(const char* name, const char* value) { _putenv_s(name, value ? value : ""); }

} // namespace platform
