// Reading .reg files: lines are parsed into changes.
#include "platform/fold_case.h"
#include "platform/registry_changes.h"
#include "platform/registry_files.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <fstream>
#include <iterator>

namespace platform {
namespace {

// What a parser of one line raises; the file's name and the line's number join it further up.
struct LineError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

std::string quoted(OleView text) { return "\"" + toNarrow(text) + "\""; }

bool isBlank(OLECHAR unit) { return unit == u' ' || unit == u'\t'; }

OleView trimmed(OleView text) {
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

// The text after an item may only be a comment.
void expectEnd(OleView rest) {
    rest = trimmed(rest);
    if (!rest.empty() && rest.front() != u';') {
        throw LineError("unexpected text " + quoted(rest));
    }
}

std::vector<OleString> splitLines(OleView text) {
    std::vector<OleString> lines;
    while (!text.empty()) {
        const std::size_t end = text.find(u'\n');
        OleView line = text.substr(0, end);
        text.remove_prefix(end == OleView::npos ? text.size() : end + 1);
        if (!line.empty() && line.back() == u'\r') {
            line.remove_suffix(1);
        }
        lines.emplace_back(line);
    }
    return lines;
}

// The text of a file in UTF-16LE (with its byte order mark) or UTF-8. Raises LineError for the
// whole file; bad UTF-8 is found line by line instead, for the sake of the line number.
std::vector<OleString> decodeLines(std::string_view bytes) {
    if (bytes.starts_with("\xFF\xFE")) {
        bytes.remove_prefix(2);
        if (bytes.size() % 2 != 0) {
            throw LineError("the file ends in the middle of a UTF-16 character");
        }
        OleString text;
        text.reserve(bytes.size() / 2);
        for (std::size_t i = 0; i < bytes.size(); i += 2) {
            const auto low = static_cast<unsigned char>(bytes[i]);
            const auto high = static_cast<unsigned char>(bytes[i + 1]);
            text += static_cast<OLECHAR>(low | (high << 8));
        }
        return splitLines(text);
    }
    if (bytes.starts_with("\xEF\xBB\xBF")) {
        bytes.remove_prefix(3);
    }
    // A broken character can't swallow a line end, so the lines stay countable.
    return splitLines(toOle(bytes));
}

std::vector<BYTE> bytesOf(OleView text) {
    std::vector<BYTE> bytes;
    bytes.reserve((text.size() + 1) * 2);
    for (const OLECHAR unit : text) {
        bytes.push_back(static_cast<BYTE>(unit & 0xFF));
        bytes.push_back(static_cast<BYTE>(unit >> 8));
    }
    bytes.insert(bytes.end(), 2, BYTE{0});
    return bytes;
}

// Reads a quoted text at the front of rest and removes it there.
OleString takeText(OleView& rest) {
    OleString text;
    for (std::size_t i = 1; i < rest.size(); ++i) {
        if (rest[i] == u'"') {
            rest.remove_prefix(i + 1);
            return text;
        }
        if (rest[i] == u'\\') {
            if (++i == rest.size()) {
                break;
            }
            if (rest[i] != u'\\' && rest[i] != u'"') {
                throw LineError("a backslash in a text is written \\\\, not " +
                                quoted(rest.substr(i - 1, 2)));
            }
        }
        text += rest[i];
    }
    throw LineError("a text without its closing quote");
}

std::uint32_t parseHex(OleView digits, std::uint32_t limit, const char* what) {
    const std::string narrow = toNarrow(trimmed(digits));
    std::uint32_t value = 0;
    const auto [end, error] =
        std::from_chars(narrow.data(), narrow.data() + narrow.size(), value, 16);
    if (narrow.empty() || error != std::errc() || end != narrow.data() + narrow.size() ||
        value > limit) {
        throw LineError(quoted(trimmed(digits)) + " is not " + what);
    }
    return value;
}

class FileParser {
  public:
    explicit FileParser(const std::filesystem::path& file)
        : file_(std::filesystem::absolute(file)), folder_(file_.parent_path()) {}

    std::vector<RegistryChange> parse() {
        // Opening a folder succeeds; reading from it doesn't.
        std::ifstream stream;
        if (!std::filesystem::is_directory(file_)) {
            stream.open(file_, std::ios::binary);
        }
        if (!stream.is_open()) {
            throw RegistryFileError(file_.string() + ": the file cannot be read");
        }
        const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
        try {
            lines_ = decodeLines(bytes);
            parseHeader();
            while (next_ < lines_.size()) {
                parseLine(takeLine());
            }
        } catch (const LineError& error) {
            throw RegistryFileError(file_.string() + ":" +
                                    std::to_string(std::max<std::size_t>(next_, 1)) + ": " +
                                    error.what());
        }
        return std::move(changes_);
    }

  private:
    OleString takeLine() {
        OleString line = lines_[next_++];
        if (line.find(u'\uFFFD') != OleString::npos) {
            throw LineError("the line is not valid UTF-8 or UTF-16");
        }
        if (line.find(u'\0') != OleString::npos) {
            throw LineError("the line holds a zero character");
        }
        return line;
    }

    void parseHeader() {
        const OleString header = lines_.empty() ? OleString() : takeLine();
        const OleView text = trimmed(header);
        isVersion4_ = text == OLESTR("REGEDIT4");
        if (!isVersion4_ && text != OLESTR("Windows Registry Editor Version 5.00")) {
            throw LineError("the first line must be \"REGEDIT4\" or \"Windows Registry Editor "
                            "Version 5.00\"");
        }
    }

    void parseLine(const OleString& line) {
        const OleView text = trimmed(line);
        if (text.empty() || text.front() == u';') {
            return;
        }
        if (text.front() == u'[') {
            parseKey(text);
        } else if (text.front() == u'"' || text.front() == u'@') {
            parseValue(text);
        } else {
            throw LineError("neither a key, a value nor a comment: " + quoted(text));
        }
    }

    void parseKey(OleView text) {
        const std::size_t end = text.rfind(u']');
        if (end == OleView::npos) {
            throw LineError("a key without its closing bracket");
        }
        expectEnd(text.substr(end + 1));
        OleView name = text.substr(1, end - 1);
        KeyChange change;
        change.remove = name.starts_with(u'-');
        if (change.remove) {
            name.remove_prefix(1);
        }
        change.path = splitRegistryPath(name);
        static constexpr std::array<OleView, 5> roots{
            OLESTR("HKEY_CLASSES_ROOT"), OLESTR("HKEY_CURRENT_USER"), OLESTR("HKEY_LOCAL_MACHINE"),
            OLESTR("HKEY_USERS"), OLESTR("HKEY_CURRENT_CONFIG")};
        if (change.path.empty() || std::none_of(roots.begin(), roots.end(), [&](OleView root) {
                return equalNoCase(root, change.path.front());
            })) {
            throw LineError("the key " + quoted(name) + " does not begin with a root key");
        }
        if (change.remove && change.path.size() == 1) {
            throw LineError("a root key cannot be removed");
        }
        inKey_ = !change.remove;
        isServerKey_ = equalNoCase(change.path.back(), OLESTR("InprocServer32"));
        changes_.emplace_back(std::move(change));
    }

    void parseValue(OleView text) {
        if (!inKey_) {
            throw LineError("a value that is in no key");
        }
        ValueChange change;
        if (text.front() == u'@') {
            text.remove_prefix(1);
        } else {
            change.name = takeText(text);
        }
        text = trimmed(text);
        if (text.empty() || text.front() != u'=') {
            throw LineError("a value's name must be followed by =");
        }
        change.value = parseData(trimmed(text.substr(1)), change.name.empty());
        changes_.emplace_back(std::move(change));
    }

    // Nothing when the value is to be removed.
    std::optional<RegistryValue> parseData(OleView text, bool isDefault) {
        if (text.starts_with(u'-')) {
            expectEnd(text.substr(1));
            return std::nullopt;
        }
        if (text.starts_with(u'"')) {
            const OleString value = takeText(text);
            expectEnd(text);
            return RegistryValue{REG_SZ,
                                 bytesOf(isDefault && isServerKey_ ? libraryPath(value) : value)};
        }
        const std::size_t colon = text.find(u':');
        const OleView kind = trimmed(text.substr(0, colon));
        const OleView rest = colon == OleView::npos ? OleView() : text.substr(colon + 1);
        if (equalNoCase(kind, OLESTR("dword"))) {
            return parseDword(rest.substr(0, rest.find(u';')));
        }
        if (equalNoCase(kind.substr(0, 3), OLESTR("hex"))) {
            return parseBytes(kind.substr(3), rest);
        }
        throw LineError("a value of an unknown kind: " + quoted(text));
    }

    static RegistryValue parseDword(OleView digits) {
        const std::uint32_t value = parseHex(digits, 0xFFFFFFFF, "a hexadecimal number of 32 bits");
        RegistryValue result{REG_DWORD, {}};
        for (unsigned shift = 0; shift < 32; shift += 8) {
            result.data.push_back(static_cast<BYTE>(value >> shift));
        }
        return result;
    }

    RegistryValue parseBytes(OleView kind, OleView text) {
        RegistryValue result{REG_BINARY, {}};
        if (!kind.empty()) {
            if (kind.front() != u'(' || kind.back() != u')') {
                throw LineError("a value of an unknown kind: " + quoted(kind));
            }
            result.type = parseHex(kind.substr(1, kind.size() - 2), 0xFFFFFFFF, "a value's type");
        }
        OleString joined = joinContinued(text);
        OleView rest = trimmed(joined);
        while (!rest.empty()) {
            const std::size_t comma = rest.find(u',');
            result.data.push_back(
                static_cast<BYTE>(parseHex(rest.substr(0, comma), 0xFF, "a hexadecimal byte")));
            rest = comma == OleView::npos ? OleView() : trimmed(rest.substr(comma + 1));
        }
        const bool isText =
            result.type == REG_SZ || result.type == REG_EXPAND_SZ || result.type == REG_MULTI_SZ;
        if (isVersion4_ && isText) {
            // The older form has its texts in the narrow code page.
            const OleString wide = toOle(std::string_view(
                reinterpret_cast<const char*>(result.data.data()), result.data.size()));
            result.data = bytesOf(wide);
            result.data.resize(result.data.size() - sizeof(OLECHAR));
        }
        return result;
    }

    // A line of bytes that ends in a backslash goes on in the next one.
    OleString joinContinued(OleView text) {
        OleString joined;
        OleString line(text);
        for (;;) {
            const OleView part = trimmed(OleView(line).substr(0, line.find(u';')));
            if (!part.ends_with(u'\\')) {
                return joined.append(part);
            }
            joined.append(part.substr(0, part.size() - 1));
            if (next_ == lines_.size()) {
                throw LineError("the file ends in a continued line");
            }
            line = takeLine();
        }
    }

    OleString libraryPath(const OleString& text) const {
        const std::filesystem::path path(text);
        if (text.empty() || path.is_absolute()) {
            return text;
        }
        return toOle((folder_ / path).lexically_normal().u16string());
    }

    std::filesystem::path file_;
    std::filesystem::path folder_;
    std::vector<OleString> lines_;
    std::size_t next_ = 0; // which is also the number of the line that was taken last
    bool isVersion4_ = false;
    bool inKey_ = false;
    bool isServerKey_ = false;
    std::vector<RegistryChange> changes_;
};

} // namespace

RegistryPath splitRegistryPath(OleView path) {
    RegistryPath names;
    while (!path.empty()) {
        const std::size_t end = path.find(u'\\');
        if (const OleView name = path.substr(0, end); !name.empty()) {
            names.emplace_back(name);
        }
        path.remove_prefix(end == OleView::npos ? path.size() : end + 1);
    }
    return names;
}

std::vector<RegistryChange> parseRegistryFile(const std::filesystem::path& file) {
    return FileParser(file).parse();
}

} // namespace platform
