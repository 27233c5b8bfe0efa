// A fixture after which nothing is alive: no COM object, no host object, no host array.
#pragma once

#include "support/living.h"

#include <gtest/gtest.h>

namespace axlink2::test {

class AliveCheck : public ::testing::Test {
  protected:
    // At the very end, when what the derived fixture holds has gone.
    ~AliveCheck() override { EXPECT_EQ(before_.newcomers(), ""); }

  private:
    const Living before_ = {};
};

} // namespace axlink2::test
