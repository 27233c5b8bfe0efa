// Brings the module up once for all tests of an executable.
#pragma once

#include "entry/entry.h"
#include "platform/com.h"

#include <gtest/gtest.h>

namespace axlink2::test {

class RegisteredModule : public ::testing::Environment {
  public:
    void SetUp() override { RegisterAxlink2(); }
};

inline ::testing::Environment* const registeredModule =
    ::testing::AddGlobalTestEnvironment(new RegisteredModule());

} // namespace axlink2::test
