// How deep arrays may stand in arrays, on the way to COM and on the way back.
#pragma once

namespace axlink2 {

// Beyond that the stack is in danger.
inline constexpr int deepestNesting = 1000;

} // namespace axlink2
