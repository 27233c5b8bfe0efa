// A small class of the host, for member chains and events without any server.
#pragma once

#include "shell/value.h"

namespace velsh::test {

// The function `widget(name)` makes an object of class "Test.Widget": property Name (text),
// property Child (any, null at first), read-only property Size (double), method Add(a, b),
// method Item(i), which gives a new widget, method Split(x) with two outputs, method Fire(n), which
// sends the event Ticked with the field Count, and method delete.
void defineWidgets();

} // namespace velsh::test
