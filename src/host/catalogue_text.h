// The text of catalogue.txt.
#pragma once

namespace velmar {

extern const char* const catalogueText;

} // namespace velmar
