// Failed calls as host errors: identifiers, texts, and what a fault in a server becomes.
#include "comruntime/com_error.h"
#include "comruntime/server_creation.h"
#include "comruntime/system_message.h"
#include "host/exception.h"
#include "host/message_ids.h"
#include "host/text.h"
#include "support/alive_check.h"
#include "support/errors.h"

#include <functional>

namespace {

using namespace axlink2;
using COMError = hbase::core::except::Exception<VELMAR::COM::COMException, std::exception, void>;

std::u16string catalogue(const hmsgcore::BaseMsgID& message) {
    return hsys::i18n::MessageCatalog::get_message(message, hsys::i18n::HsysLocale::global());
}

struct Record {
    const OLECHAR* source = nullptr;
    const OLECHAR* description = nullptr;
    const OLECHAR* helpFile = nullptr;
    DWORD helpContext = 0;
    WORD wCode = 0;
    SCODE scode = 0;
};

struct Thrown {
    std::string identifier;
    std::u16string argument; // of the message COMException
    std::u16string text;
};

Thrown thrown(HRESULT hr, const Record& record = {}, UINT argumentError = 0, UINT argumentCount = 0,
              bool active = true) {
    COMExcepInfo excepInfo(active);
    excepInfo.info.bstrSource = SysAllocString(record.source);
    excepInfo.info.bstrDescription = SysAllocString(record.description);
    excepInfo.info.bstrHelpFile = SysAllocString(record.helpFile);
    excepInfo.info.dwHelpContext = record.helpContext;
    excepInfo.info.wCode = record.wCode;
    excepInfo.info.scode = record.scode;
    try {
        throwCOMError(hr, excepInfo, argumentError, argumentCount);
    } catch (const COMError& error) {
        return {error.GetErrorId(), std::get<std::u16string>(error.message().arguments.at(0)),
                error.GetUnicodeMessageTxt()};
    }
}

TEST(COMErrorText, DispatchCodesHaveMessagesOfTheirOwnAndTheSystemSpeaksForTheOthers) {
    using namespace VELMAR::COM;
    const std::pair<HRESULT, std::u16string> rows[] = {
        {DISP_E_MEMBERNOTFOUND, catalogue(DISP_E_MEMBERNOTFOUND_ErrMsg())},
        {DISP_E_PARAMNOTFOUND, catalogue(DISP_E_PARAMNOTFOUND_ErrMsg(1))},
        {DISP_E_TYPEMISMATCH, catalogue(DISP_E_TYPEMISMATCH_ErrMsg(1))},
        {DISP_E_UNKNOWNNAME, catalogue(DISP_E_UNKNOWNNAME_ErrMsg())},
        {DISP_E_NONAMEDARGS, catalogue(DISP_E_NONAMEDARGS_ErrMsg())},
        {DISP_E_OVERFLOW, catalogue(DISP_E_OVERFLOW_ErrMsg())},
        {DISP_E_UNKNOWNLCID, catalogue(DISP_E_UNKNOWNLCID_ErrMsg())},
        {DISP_E_BADPARAMCOUNT, catalogue(DISP_E_BADPARAMCOUNT_ErrMsg())},
        {DISP_E_PARAMNOTOPTIONAL, catalogue(DISP_E_PARAMNOTOPTIONAL_ErrMsg())},
        {E_FAIL, catalogue(DISP_E_default_ErrMsg(systemMessageText(E_FAIL)))},
        // Unknown to the system as well.
        {static_cast<HRESULT>(0x8BADF00D), catalogue(DISP_E_default_ErrMsgErrCode("8BADF00D"))},
    };
    for (const auto& [hr, text] : rows) {
        const Thrown error = thrown(hr, {}, 0, 1);
        EXPECT_EQ(error.argument, text) << hr;
        EXPECT_EQ(error.identifier, "VELMAR:COM:E" + std::to_string(static_cast<ULONG>(hr)));
        EXPECT_NE(error.text.find(text), std::u16string::npos) << hr;
    }
}

TEST(COMErrorText, CountsArgumentsFromTheLeft) {
    using VELMAR::COM::DISP_E_TYPEMISMATCH_ErrMsg;
    EXPECT_EQ(thrown(DISP_E_TYPEMISMATCH, {}, 2, 3).argument,
              catalogue(DISP_E_TYPEMISMATCH_ErrMsg(1)));
    EXPECT_EQ(thrown(DISP_E_TYPEMISMATCH, {}, 0, 3).argument,
              catalogue(DISP_E_TYPEMISMATCH_ErrMsg(3)));
    // A server that reports an argument which isn't there.
    EXPECT_EQ(thrown(DISP_E_TYPEMISMATCH, {}, 5, 3).argument,
              catalogue(DISP_E_TYPEMISMATCH_ErrMsg(4294967294)));
}

TEST(COMErrorText, KeepsEverythingThatTheServerSaid) {
    using namespace VELMAR::COM;
    const auto source = [](const char16_t* text) {
        return catalogue(DISP_E_EXCEPTION_PartSourceMsg(text));
    };
    const auto description = [](const char16_t* text) {
        return catalogue(DISP_E_EXCEPTION_PartDescriptionMsg(text));
    };
    const auto whole = [](const std::u16string& text) {
        return catalogue(DISP_E_EXCEPTION_ErrMsgNL(text));
    };
    const auto system = [](HRESULT code) {
        return catalogue(DISP_E_EXCEPTION_ErrMsg(systemMessageText(code)));
    };
    struct Row {
        const char* what;
        Record record;
        std::u16string text;
        const char* identifier;
    };
    const Row rows[] = {
        {"source and description",
         {.source = OLESTR("S"), .description = OLESTR("D")},
         whole(source(u"S") + description(u"D")),
         "VELMAR:COM:E2147614729"},
        {"help file with context 0",
         {.source = OLESTR("S"), .description = OLESTR("D"), .helpFile = OLESTR("h.chm")},
         whole(source(u"S") + description(u"D") +
               catalogue(DISP_E_EXCEPTION_PartHelpFileMsg(u"h.chm")) +
               catalogue(DISP_E_EXCEPTION_PartHelpContextID("0"))),
         "VELMAR:COM:E2147614729"},
        {"help context in hexadecimal, and a code",
         {.description = OLESTR("D"),
          .helpFile = OLESTR("h.chm"),
          .helpContext = 0xAB,
          .wCode = 1000},
         whole(description(u"D") + catalogue(DISP_E_EXCEPTION_PartHelpFileMsg(u"h.chm")) +
               catalogue(DISP_E_EXCEPTION_PartHelpContextID("AB"))),
         "VELMAR:COM:E1000"},
        {"empty description",
         {.description = OLESTR("")},
         whole(description(u"")),
         "VELMAR:COM:E2147614729"},
        {"source alone, the system speaks",
         {.source = OLESTR("S"), .scode = E_FAIL},
         system(E_FAIL),
         "VELMAR:COM:E2147500037"},
        {"wCode wins over scode",
         {.wCode = 42, .scode = E_FAIL},
         catalogue(DISP_E_default_ErrMsgErrCode("2A")),
         "VELMAR:COM:E42"},
        {"no code at all", {}, system(DISP_E_EXCEPTION), "VELMAR:COM:E2147614729"},
    };
    for (const Row& row : rows) {
        const Thrown error = thrown(DISP_E_EXCEPTION, row.record);
        EXPECT_EQ(error.argument, row.text) << row.what;
        EXPECT_EQ(error.identifier, row.identifier) << row.what;
    }
}

TEST(COMErrorText, TakesTheCodeOfTheRecordForAnyFailureAndNothingFromAnInactiveOne) {
    const Record record{.description = OLESTR("D"), .wCode = 7};
    EXPECT_EQ(thrown(DISP_E_OVERFLOW, record).identifier, "VELMAR:COM:E7");
    const Thrown inactive = thrown(DISP_E_EXCEPTION, record, 0, 0, false);
    EXPECT_EQ(inactive.identifier, "VELMAR:COM:E2147614729");
    EXPECT_EQ(inactive.argument,
              catalogue(VELMAR::COM::DISP_E_EXCEPTION_ErrMsg(systemMessageText(DISP_E_EXCEPTION))));
}

TEST(COMErrorText, NamesTheCodeWhereTheSystemHasNoTextForAStartThatFailed) {
    constexpr auto unknown = static_cast<HRESULT>(0x8004000FU);
    ASSERT_TRUE(systemMessageText(unknown).empty());
    const auto error = test::describedErrorOf([&] { raiseServerCreationFailed(unknown); });
    EXPECT_EQ(error.identifier, "VELMAR:COM:servercreationfailed");
    EXPECT_TRUE(error.text.ends_with(": error 0x8004000F")) << error.text;
    EXPECT_EQ(catalogue(VELMAR::COM::DISP_E_default_ErrMsgErrCode("2A")),
              u"The call failed with error 0x2A.");
}

} // namespace
