// The prompt on a terminal: editing, history and completion by libedit.
#include "shell/prompt_plain.h"

#include <cstdlib>
#include <cstring>
#include <editline/readline.h>
#include <filesystem>
#include <memory>

namespace velsh {

namespace {

constexpr int historyLength = 1000;

// The library calls back without a place for data.
Completer activeCompleter;
std::string before; // on the line in front of the word

std::filesystem::path historyFile() {
    const char* state = std::getenv("XDG_STATE_HOME");
    const char* home = std::getenv("HOME");
    if (state && *state) return std::filesystem::path(state) / "axlink2" / "history";
    if (home && *home) return std::filesystem::path(home) / ".local/state/axlink2/history";
    return {};
}

char* nextCandidate(const char* word, int state) {
    static std::vector<std::string> candidates;
    static std::size_t next = 0;
    if (state == 0) {
        candidates = activeCompleter(before, word);
        next = 0;
    }
    return next < candidates.size() ? strdup(candidates[next++].c_str()) : nullptr;
}

char** completeWord(const char* word, int start, int) {
    rl_attempted_completion_over = 1; // no file names
    before.assign(rl_line_buffer, static_cast<std::size_t>(start));
    return rl_completion_matches(word, nextCandidate);
}

class EditingReader : public LineReader {
  public:
    explicit EditingReader(Completer completer) {
        activeCompleter = std::move(completer);
        rl_readline_name = "velsh";
        rl_attempted_completion_function = completeWord;
        rl_completer_word_break_characters = const_cast<char*>(wordBreaks);
        rl_completion_append_character = '\0';
        using_history();
        stifle_history(historyLength);
        if (!file_.empty()) read_history(file_.c_str());
    }
    ~EditingReader() override {
        save();
        clear_history();
        activeCompleter = nullptr;
    }
    bool isInteractive() const override { return true; }
    std::optional<std::string> read(const std::string& prompt) override {
        const std::unique_ptr<char, decltype(&std::free)> line(readline(prompt.c_str()),
                                                               &std::free);
        if (!line) return std::nullopt;
        return std::string(line.get());
    }
    void remember(const std::string& entry) override { add_history(entry.c_str()); }

  private:
    // A history that can't be kept is no reason to complain at the end of a session.
    void save() const {
        if (file_.empty()) return;
        std::error_code ignored;
        std::filesystem::create_directories(file_.parent_path(), ignored);
        write_history(file_.c_str());
    }

    std::filesystem::path file_ = historyFile();
};

} // namespace

std::unique_ptr<LineReader> makeLineReader(Completer completer) {
    if (!isTerminal()) return std::make_unique<PlainReader>();
    return std::make_unique<EditingReader>(std::move(completer));
}

} // namespace velsh
