// Lines from a person or a pipe.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velsh {

class LineReader {
  public:
    virtual ~LineReader() = default;
    // Whether a person is there, who sees the prompt.
    virtual bool isInteractive() const = 0;
    // The next line without its end; nothing at the end of the input.
    virtual std::optional<std::string> read(const std::string& prompt) = 0;
    // Keeps an entry for the history.
    virtual void remember(const std::string& entry) = 0;
};

// The whole words that a word can become, which stands behind `before` on its line.
using Completer =
    std::function<std::vector<std::string>(const std::string& before, const std::string& word)>;

// Reads standard input: with editing, history and completion where the system has them. One reader
// exists at a time.
std::unique_ptr<LineReader> makeLineReader(Completer completer);

} // namespace velsh
