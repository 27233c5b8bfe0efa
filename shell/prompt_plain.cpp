// The prompt without editing.
#include "shell/prompt_plain.h"

namespace velsh {

std::unique_ptr<LineReader> makeLineReader(Completer) { return std::make_unique<PlainReader>(); }

} // namespace velsh
