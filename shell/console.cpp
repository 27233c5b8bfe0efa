// The conversation at the prompt, and programs that come through a pipe.
#include "shell/console.h"

#include <boost/algorithm/string/trim.hpp>

namespace velsh {

namespace {

bool endsConversation(const std::string& entry) {
    const std::string word =
        boost::trim_copy_if(entry, [](char c) { return c == ';' || c == ' ' || c == '\r'; });
    return word == "exit" || word == "quit";
}

// A program as long as its blocks and brackets need; nothing at the end of the input.
std::optional<std::string> readEntry(LineReader& reader) {
    std::optional<std::string> entry = reader.read(">> ");
    while (entry && isIncomplete(*entry)) {
        std::optional<std::string> more = reader.read(".. ");
        if (!more) break;
        *entry += "\n" + *more;
    }
    return entry;
}

} // namespace

bool runConsole(Session& session, LineReader& reader) {
    while (std::optional<std::string> entry = readEntry(reader)) {
        if (endsConversation(*entry)) return true;
        if (boost::trim_copy(*entry).empty()) continue;
        reader.remember(*entry);
        if (!session.run(*entry, "") && !reader.isInteractive()) return false;
    }
    return true;
}

} // namespace velsh
