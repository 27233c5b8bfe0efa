// What by-reference VARIANTs point at.
#pragma once

#include "platform/holders.h"

#include <memory>
#include <vector>

namespace axlink2 {

// Keeps the values behind by-reference VARIANTs, contents too, until it goes. Addresses are stable.
class ReferenceHolders {
  public:
    // A new empty VARIANT to refer to.
    VARIANT& add() {
        holders_.push_back(std::make_unique<platform::ScopedVariant>());
        return *holders_.back()->inOut();
    }

  private:
    std::vector<std::unique_ptr<platform::ScopedVariant>> holders_;
};

} // namespace axlink2
