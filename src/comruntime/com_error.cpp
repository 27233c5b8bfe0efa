// The mapping of HRESULT and EXCEPINFO to host errors.
#include "comruntime/com_error.h"

#include "comruntime/system_message.h"
#include "host/exception.h"
#include "host/message_ids.h"
#include "host/text.h"
#include "platform/holders.h"

#include <boost/format.hpp>

#include <cstdint>
#include <string>

namespace axlink2 {
namespace {

std::u16string catalogueText(const hmsgcore::BaseMsgID& message) {
    return hsys::i18n::MessageCatalog::get_message(message, hsys::i18n::HsysLocale::global());
}

std::u16string textOf(BSTR text) { return platform::toUtf16(platform::viewOf(text)); }

std::string hexadecimal(std::uint32_t code) { return (boost::format("%X") % code).str(); }

template <class Message>
std::u16string plainText(std::int64_t) {
    return catalogueText(Message());
}
template <class Message>
std::u16string positionText(std::int64_t position) {
    return catalogueText(Message(position));
}

struct DispatchFailure {
    HRESULT hr;
    std::u16string (*text)(std::int64_t argumentPosition);
};

constexpr DispatchFailure dispatchFailures[] = {
    {DISP_E_MEMBERNOTFOUND, plainText<VELMAR::COM::DISP_E_MEMBERNOTFOUND_ErrMsg>},
    {DISP_E_PARAMNOTFOUND, positionText<VELMAR::COM::DISP_E_PARAMNOTFOUND_ErrMsg>},
    {DISP_E_TYPEMISMATCH, positionText<VELMAR::COM::DISP_E_TYPEMISMATCH_ErrMsg>},
    {DISP_E_UNKNOWNNAME, plainText<VELMAR::COM::DISP_E_UNKNOWNNAME_ErrMsg>},
    {DISP_E_NONAMEDARGS, plainText<VELMAR::COM::DISP_E_NONAMEDARGS_ErrMsg>},
    {DISP_E_OVERFLOW, plainText<VELMAR::COM::DISP_E_OVERFLOW_ErrMsg>},
    {DISP_E_UNKNOWNLCID, plainText<VELMAR::COM::DISP_E_UNKNOWNLCID_ErrMsg>},
    {DISP_E_BADPARAMCOUNT, plainText<VELMAR::COM::DISP_E_BADPARAMCOUNT_ErrMsg>},
    {DISP_E_PARAMNOTOPTIONAL, plainText<VELMAR::COM::DISP_E_PARAMNOTOPTIONAL_ErrMsg>},
};

// What the server said, part by part.
std::u16string serverText(const EXCEPINFO& info) {
    std::u16string text;
    if (info.bstrSource)
        text = catalogueText(VELMAR::COM::DISP_E_EXCEPTION_PartSourceMsg(textOf(info.bstrSource)));
    text += catalogueText(
        VELMAR::COM::DISP_E_EXCEPTION_PartDescriptionMsg(textOf(info.bstrDescription)));
    if (info.bstrHelpFile) {
        text +=
            catalogueText(VELMAR::COM::DISP_E_EXCEPTION_PartHelpFileMsg(textOf(info.bstrHelpFile)));
        text += catalogueText(
            VELMAR::COM::DISP_E_EXCEPTION_PartHelpContextID(hexadecimal(info.dwHelpContext)));
    }
    return catalogueText(VELMAR::COM::DISP_E_EXCEPTION_ErrMsgNL(text));
}

// The system's text of `code` inside the message of key `Message`, or its hexadecimal form.
template <class Message>
std::u16string systemText(HRESULT code, DWORD size) {
    const std::u16string text = systemMessageText(code, size);
    if (!text.empty()) return catalogueText(Message(text));
    return catalogueText(
        VELMAR::COM::DISP_E_default_ErrMsgErrCode(hexadecimal(static_cast<std::uint32_t>(code))));
}

std::u16string failureText(HRESULT hr, HRESULT code, const COMExcepInfo& excepInfo,
                           std::int64_t argumentPosition) {
    if (hr == DISP_E_EXCEPTION) {
        if (excepInfo.active && excepInfo.info.bstrDescription) return serverText(excepInfo.info);
        return systemText<VELMAR::COM::DISP_E_EXCEPTION_ErrMsg>(code, 0);
    }
    for (const DispatchFailure& failure : dispatchFailures)
        if (failure.hr == hr) return failure.text(argumentPosition);
    return systemText<VELMAR::COM::DISP_E_default_ErrMsg>(hr, 8192);
}

// The code that the server reported, or else `hr`.
HRESULT reportedCode(HRESULT hr, const COMExcepInfo& excepInfo) {
    if (!excepInfo.active) return hr;
    if (excepInfo.info.wCode) return excepInfo.info.wCode;
    return excepInfo.info.scode ? excepInfo.info.scode : hr;
}

} // namespace

void COMExcepInfo::freeTexts() {
    SysFreeString(info.bstrSource);
    SysFreeString(info.bstrDescription);
    SysFreeString(info.bstrHelpFile);
}

void throwCOMError(HRESULT hr, const COMExcepInfo& excepInfo, UINT argumentError,
                   UINT argumentCount) {
    const HRESULT code = reportedCode(hr, excepInfo);
    // `rgvarg` runs backwards, so this counts from 1 at the first argument.
    const std::uint32_t position = argumentCount - argumentError;
    const std::u16string text = failureText(hr, code, excepInfo, position);
    const auto number = static_cast<std::uint32_t>(code);
    hmsgcore::raise((boost::format("VELMAR:COM:E%u") % number).str(),
                    VELMAR::COM::COMException(text));
}

} // namespace axlink2
