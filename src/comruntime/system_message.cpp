// System message texts.
#include "comruntime/system_message.h"

#include "host/text.h"

#include <memory>

namespace axlink2 {
namespace {

constexpr DWORD neutralLanguage = 0x0400; // with the user's default sublanguage

struct LocalFreeDeleter {
    void operator()(OLECHAR* text) const { LocalFree(text); }
};

} // namespace

std::u16string systemMessageText(HRESULT hr, DWORD size) {
    OLECHAR* buffer = nullptr;
    // With the flag for allocation the system wants the address of the pointer in its place.
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM,
                                        nullptr, static_cast<DWORD>(hr), neutralLanguage,
                                        reinterpret_cast<LPOLESTR>(&buffer), size, nullptr);
    const std::unique_ptr<OLECHAR, LocalFreeDeleter> text(buffer);
    return length && text ? hsys::i18n::to_ustring(text.get()) : std::u16string();
}

} // namespace axlink2
