// Filling an EXCEPINFO.
#include "servers/kit/errors.h"

#include "platform/holders.h"

namespace kit {

namespace {

platform::ScopedBstr bstrOf(const std::optional<platform::OleString>& text) {
    return text ? platform::makeBstr(*text) : platform::ScopedBstr();
}

} // namespace

void ServerError::fill(EXCEPINFO& info) const {
    auto sourceText = bstrOf(source);
    auto descriptionText = bstrOf(description);
    auto helpFileText = bstrOf(helpFile);
    info = EXCEPINFO{};
    info.wCode = wCode;
    info.scode = scode;
    info.dwHelpContext = helpContext;
    info.bstrSource = sourceText.detach();
    info.bstrDescription = descriptionText.detach();
    info.bstrHelpFile = helpFileText.detach();
}

} // namespace kit
