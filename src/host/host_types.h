// Where the host's own types come from.
#pragma once

#include "host/type_entry.h"

namespace velmar {

// Appends the types of one number and of one text.
void addScalarTypes(std::vector<std::unique_ptr<HostType>>& types);

} // namespace velmar
