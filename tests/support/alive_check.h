// A fixture after which nothing is alive: no COM object, no host object, no host array.
#pragma once

#include "host/array.h"
#include "host/embedding.h"
#include "servers/kit/live_objects.h"

#include <gtest/gtest.h>

#include <string>

namespace axlink2::test {

class AliveCheck : public ::testing::Test {
  protected:
    // At the very end, when what the derived fixture holds has gone.
    ~AliveCheck() override {
        EXPECT_EQ(kit::liveObjects(), comObjects_) << "alive: " << names();
        EXPECT_EQ(velmar::liveObjectCount(), hostObjects_);
        EXPECT_EQ(hxLiveArrayCount(), arrays_);
    }

  private:
    static std::string names() {
        std::string result;
        for (const std::string& name : kit::liveObjectNames())
            result += name + " ";
        return result;
    }

    const int comObjects_ = kit::liveObjects();
    const std::size_t hostObjects_ = velmar::liveObjectCount();
    const std::size_t arrays_ = hxLiveArrayCount();
};

} // namespace axlink2::test
