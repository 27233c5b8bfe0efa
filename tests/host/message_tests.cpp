// Messages: every key of the catalogue, errors, warnings and output.
#include "host/exception.h"
#include "host/host_messages.h"
#include "host/message_ids.h"
#include "host/output.h"
#include "platform/com.h"
#include "tests/host/host_test.h"

using namespace host_test;

namespace {

struct Key {
    const char* component;
    const char* key;
    std::size_t arguments;
};

#define NONE(space, component, key) {component, #key, 0},
#define ONE(space, component, key, A) {component, #key, 1},
#define TWO(space, component, key, A, B) {component, #key, 2},
#define EITHER(space, component, key, A, B) {component, #key, 1},

std::vector<Key> allKeys() {
    std::vector<Key> keys{VELMAR_MESSAGES(NONE, ONE, TWO, EITHER)};
    for (const velmar::HostKey& key : velmar::keys::all)
        keys.push_back({key.component, key.key, key.arguments});
    return keys;
}

struct AnyMessage : hmsgcore::BaseMsgID {
    AnyMessage(const Key& key, std::vector<hmsgcore::MessageArgument> arguments)
        : BaseMsgID(key.component, key.key, std::move(arguments)) {}
};

std::u16string textOf(const hmsgcore::BaseMsgID& message) {
    return hsys::i18n::MessageCatalog::get_message(message, hsys::i18n::HsysLocale::global());
}

} // namespace

class Messages : public HostTest {};

TEST_F(Messages, KeepTheirArgumentsAsTheyWereGiven) {
    using hmsgcore::MessageArgument;
    const MessageArgument integer(std::in_place_index<0>, -5);
    const MessageArgument narrow(std::in_place_index<1>, "5\u00FC");
    const MessageArgument wide(std::in_place_index<2>, u"5");
    EXPECT_EQ(VELMAR::COM::unknownparamPosition(-5).arguments.at(0), integer);
    EXPECT_EQ(VELMAR::COM::invalidprogid("5\u00FC").arguments.at(0), narrow);
    EXPECT_EQ(VELMAR::COM::COMException(u"5").arguments.at(0), wide);
    EXPECT_TRUE(VELMAR::COM::numargs().arguments.empty());
    const Key key{"VELMAR:COM", "invalidprogidNameAndErrcode", 2};
    EXPECT_NE(textOf(AnyMessage(key, {narrow, integer})).find(u"-5"), std::u16string::npos);
    EXPECT_NE(textOf(AnyMessage(key, {narrow, wide})).find(u"5\u00FC"), std::u16string::npos);
}

TEST_F(Messages, EveryKeyHasATextThatUsesEachOfItsArguments) {
    for (const Key& key : allKeys()) {
        const std::string name = key.component + std::string(":") + key.key;
        std::vector<hmsgcore::MessageArgument> marks;
        for (std::size_t i = 0; i < key.arguments; ++i)
            marks.emplace_back(u"<" + std::u16string(1, static_cast<char16_t>(u'A' + i)) + u">");
        const std::u16string text = textOf(AnyMessage(key, marks));
        EXPECT_NE(hsys::i18n::to_string(text), name) << "no text";
        for (const hmsgcore::MessageArgument& mark : marks)
            EXPECT_NE(text.find(std::get<std::u16string>(mark)), std::u16string::npos) << name;
        // With arguments left out, a place for one more would show as nothing.
        EXPECT_EQ(textOf(AnyMessage(key, marks)).find(u'{'), std::u16string::npos) << name;
        marks.emplace_back(std::u16string(u"<more>"));
        EXPECT_EQ(textOf(AnyMessage(key, marks)), text) << name << " has a place too many";
    }
}

TEST_F(Messages, ArgumentsOfEveryKindTakeTheirPlaces) {
    EXPECT_EQ(textOf(VELMAR::COM::unknownparamPosition(2)).substr(0, 7), u"Input 2");
    EXPECT_EQ(textOf(VELMAR::COM::COMException(std::string("gr\xC3\xBCn"))), u"gr\u00fcn");
    EXPECT_EQ(textOf(VELMAR::COM::COMException(std::u16string(u"{1} stays"))), u"{1} stays");
    EXPECT_EQ(textOf(VELMAR::COM::DISP_E_EXCEPTION_PartSourceMsg(u"S")), u"Source: S\n");
    const auto mismatch = [](std::int64_t position) {
        return textOf(VELMAR::COM::DISP_E_TYPEMISMATCH_ErrMsg(position)).substr(0, 10);
    };
    EXPECT_EQ(mismatch(2), u"Argument 2");
    EXPECT_EQ(mismatch(0), u"A value is"); // at the position of no argument
    EXPECT_EQ(textOf(AnyMessage({"VELMAR:COM", "unheardOf", 0}, {})), u"VELMAR:COM:unheardOf");
}

TEST_F(Messages, ErrorsOfAnyKindAreDescribed) {
    const auto expect = [](const std::function<void()>& raise, const char* identifier,
                           const char* part) {
        const velmar::ErrorText error = axlink2::test::describedErrorOf(raise);
        EXPECT_EQ(error.identifier, identifier);
        EXPECT_NE(error.text.find(part), std::string::npos) << error.text;
    };
    expect([] { hmsgcore::raise(VELMAR::COM::invalidprogid("X.Y")); }, "VELMAR:COM:invalidprogid",
           "X.Y");
    expect([] { hmsgcore::raise("Other:id", VELMAR::COM::numargs()); }, "Other:id", "inputs");
    expect([] { velmar::raiseError("My:id", "mine"); }, "My:id", "mine");
    expect([] { _com_issue_error(E_OUTOFMEMORY); }, "VELMAR:COM:E2147942414", "");
    expect([] { throw std::bad_alloc(); }, "VELMAR:nomem", "memory");
    expect([] { throw std::runtime_error("odd"); }, "VELMAR:internal", "odd");
    expect([] { throw 3; }, "VELMAR:internal", "unknown");
    expect([] { harray::detail::error_minrhs(); }, "VELMAR:minrhs", "inputs");
    expect(
        [] {
            harray::detail::do_legacy_hx_error(
                hbase::core::except::Exception<VELMAR::COM::invalidArg>(VELMAR::COM::invalidArg()));
        },
        "VELMAR:COM:invalidArg", "identifier");
}

TEST_F(Messages, WarningsCarryTheirOwnIdentifierOrAnother) {
    hxWarningMsgId(VELMAR::COM::noPropPage());
    hxWarningMsgId("VELMAR:COM:unknownparam", VELMAR::COM::unknownparamPosition(4));
    ASSERT_EQ(warnings.size(), 2u);
    EXPECT_EQ(warnings[0].substr(0, 23), "VELMAR:COM:noPropPage: ");
    EXPECT_EQ(warnings[1].substr(0, 33), "VELMAR:COM:unknownparam: Input 4 ");
}

TEST_F(Messages, OutputGoesToItsWriterWhateverItsLength) {
    std::string written;
    velmar::setOutput([&](std::string_view text) { written += text; });
    const std::string large(5000, 'x');
    hrtPuts("a%s\n");
    hrtPrintf("%s-%d", large.c_str(), 7);
    velmar::setOutput({});
    EXPECT_EQ(written, "a%s\n" + large + "-7");
}
