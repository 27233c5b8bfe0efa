// What the host prints, its warnings, and its heap.
#include "host/output.h"

#include "host/embedding.h"
#include "host/exception.h"
#include "host/host_messages.h"
#include "platform/console.h"
#include "platform/text.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>

namespace velmar {
namespace {

using Writer = std::function<void(std::string_view)>;
using WarningWriter = std::function<void(const std::string&, const std::u16string&)>;

void writeToStandardOutput(std::string_view text) { platform::writeText(stdout, text); }

void warnOnStandardError(const std::string& identifier, const std::u16string& text) {
    std::fflush(stdout); // what was printed before it comes before it
    platform::writeText(stderr,
                        "Warning: " + platform::utf8FromUtf16(text) + " [" + identifier + "]\n");
}

// Never destroyed: what ends late may still warn.
std::shared_ptr<const Writer>& writer() {
    static auto& the =
        *new std::shared_ptr<const Writer>(std::make_shared<const Writer>(writeToStandardOutput));
    return the;
}

std::shared_ptr<const WarningWriter>& warningWriter() {
    static auto& the = *new std::shared_ptr<const WarningWriter>(
        std::make_shared<const WarningWriter>(warnOnStandardError));
    return the;
}

int quietScopes = 0;

} // namespace

QuietWarnings::QuietWarnings() { ++quietScopes; }
QuietWarnings::~QuietWarnings() { --quietScopes; }

void flushOutput() {
    if (!platform::flushText(stdout)) fail(keys::OutputLost);
}

void setOutput(std::function<void(std::string_view)> next) {
    writer() = std::make_shared<const Writer>(next ? std::move(next) : writeToStandardOutput);
}

void setWarningWriter(WarningWriter next) {
    warningWriter() =
        std::make_shared<const WarningWriter>(next ? std::move(next) : warnOnStandardError);
}

} // namespace velmar

void hrtPuts(const char* text) {
    const auto running = velmar::writer(); // which may be replaced meanwhile
    (*running)(text ? text : "");
}

void hrtPrintf(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    va_end(arguments);
    std::string text(static_cast<std::size_t>(length < 0 ? 0 : length), '\0');
    std::vsnprintf(text.data(), text.size() + 1, format, again);
    va_end(again);
    const auto running = velmar::writer();
    (*running)(text);
}

void* hrtMalloc(std::size_t size) {
    void* block = std::malloc(size ? size : 1);
    if (!block) throw std::bad_alloc();
    return block;
}

void hrtFree(void* block) { std::free(block); }

void hxWarningMsgId(const hmsgcore::BaseMsgID& message) {
    hxWarningMsgId(hbase::core::except::IMsgIDException::get_error_id(message), message);
}

void hxWarningMsgId(const std::string& identifier, const hmsgcore::BaseMsgID& message) {
    using namespace hsys::i18n;
    if (velmar::quietScopes > 0) return;
    const auto running = velmar::warningWriter();
    (*running)(identifier, MessageCatalog::get_message(message, HsysLocale::global()));
}
