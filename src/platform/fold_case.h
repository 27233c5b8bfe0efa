// Comparing text without regard to case, as names of keys, types and members are compared.
#pragma once

#include "platform/text.h"

namespace platform {

// The upper-case form of one UTF-16 unit, the same in every locale.
OLECHAR foldCase(OLECHAR unit) noexcept;

// Below 0, 0 or above 0, as a stands to b.
int compareNoCase(OleView a, OleView b) noexcept;

inline bool equalNoCase(OleView a, OleView b) noexcept {
    return a.size() == b.size() && compareNoCase(a, b) == 0;
}

// Orders map keys; takes views for look-up.
struct LessNoCase {
    using is_transparent = void;
    bool operator()(OleView a, OleView b) const noexcept { return compareNoCase(a, b) < 0; }
};

} // namespace platform
