// The tests' support where this project's own COM layer serves.
#include "platform/com.h"
#include "system_support.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace platform {

const char* const userDataVariable = "XDG_DATA_HOME";

void expectDescriptionsOut(int count) { EXPECT_EQ(outstandingTypeDescriptions(), count); }

void setVariable(const char* name, const char* value) {
    value ? setenv(name, value, 1) : unsetenv(name);
}

} // namespace platform
