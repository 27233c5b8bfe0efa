// The prompt in a Windows console, which edits lines and keeps their history itself; completion is
// added to it.
#include "platform/console.h"
#include "platform/text.h"
#include "shell/prompt_plain.h"

#include <algorithm>

namespace velsh {

namespace {

using platform::OleString;
using platform::OleView;

constexpr wchar_t tab = L'\t';
constexpr wchar_t endOfInput = 26; // Ctrl+Z

bool isConsole(HANDLE input) {
    DWORD mode = 0;
    return GetConsoleMode(input, &mode) != 0;
}

// What all texts begin with.
std::string commonStart(const std::vector<std::string>& texts) {
    std::string common = texts.front();
    for (const std::string& text : texts)
        common.erase(std::mismatch(common.begin(), common.end(), text.begin(), text.end()).first,
                     common.end());
    return common;
}

void show(const std::string& text) { platform::writeText(stdout, text); }

class ConsoleReader : public LineReader {
  public:
    ConsoleReader(HANDLE input, Completer completer)
        : input_(input), completer_(std::move(completer)) {}
    bool isInteractive() const override { return true; }
    std::optional<std::string> read(const std::string& prompt) override;
    void remember(const std::string&) override {} // the console does

  private:
    bool readMore(OleString& line) const;
    void complete(OleString& line, std::size_t at, const std::string& prompt) const;

    HANDLE input_;
    Completer completer_;
};

// Lets the person go on with the line until its end or a tab; false at the end of the input.
bool ConsoleReader::readMore(OleString& line) const {
    constexpr std::size_t most = 8192;
    CONSOLE_READCONSOLE_CONTROL control{};
    control.nLength = sizeof control;
    control.nInitialChars = static_cast<ULONG>(line.size());
    control.dwCtrlWakeupMask = 1u << tab;
    line.resize(most);
    DWORD count = 0;
    if (!ReadConsoleW(input_, line.data(), most, &count, &control)) count = 0;
    line.resize(count);
    return count > 0 && line.front() != endOfInput;
}

// Completes the word before `at`, where the tab is, as far as it goes.
void ConsoleReader::complete(OleString& line, std::size_t at, const std::string& prompt) const {
    const OleString rest = line.substr(at + 1);
    line.erase(at);
    const std::size_t start = line.find_last_of(platform::toOle(std::string_view(wordBreaks))) + 1;
    const auto candidates = completer_(platform::toNarrow(OleView(line).substr(0, start)),
                                       platform::toNarrow(OleView(line).substr(start)));
    if (!candidates.empty())
        line.replace(start, OleString::npos, platform::toOle(commonStart(candidates)));
    if (candidates.size() > 1) {
        show("\n");
        for (const std::string& candidate : candidates)
            show(candidate + "  ");
        show("\n");
    }
    line += rest;
    show("\r" + prompt + platform::toNarrow(line));
}

std::optional<std::string> ConsoleReader::read(const std::string& prompt) {
    show(prompt);
    OleString line;
    while (readMore(line)) {
        const std::size_t at = line.find(tab);
        if (at == OleString::npos)
            return platform::toNarrow(OleView(line).substr(0, line.find_first_of(L"\r\n")));
        complete(line, at, prompt);
    }
    return std::nullopt;
}

} // namespace

std::unique_ptr<LineReader> makeLineReader(Completer completer) {
    HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
    if (!isConsole(input)) return std::make_unique<PlainReader>();
    return std::make_unique<ConsoleReader>(input, std::move(completer));
}

} // namespace velsh
