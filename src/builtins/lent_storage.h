// A storage that a server gets for the length of one call.
#pragma once

#include "platform/holders.h"

namespace axlink2 {

// A stand-in for `storage` whose calls go there until it is taken back; then they answer
// STG_E_REVERTED. So a server that keeps the storage, or that fails while it holds it, doesn't keep
// the file open.
class LentStorage {
  public:
    // Raises std::bad_alloc.
    explicit LentStorage(platform::ComPtr<IStorage> storage);
    LentStorage(const LentStorage&) = delete;
    LentStorage& operator=(const LentStorage&) = delete;
    // Takes it back.
    ~LentStorage();

    IStorage* get() const;

  private:
    class StandIn;
    platform::ComPtr<StandIn> standIn_;
};

} // namespace axlink2
