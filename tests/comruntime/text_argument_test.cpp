// Reading text arguments.
#include "comruntime/text_argument.h"
#include "host/exception.h"
#include "host/text.h"
#include "support/alive_check.h"

namespace {

using namespace axlink2;
using harray::unique_array;

std::string idOf(const hxArray* array, bool rowOnly) {
    try {
        const std::u16string_view text = readScalarText(array, rowOnly);
        return "text:" + hsys::i18n::to_string(text);
    } catch (const hbase::core::except::IMsgIDException& error) {
        return error.GetErrorId();
    }
}

struct TextArgument : test::AliveCheck {};

TEST_F(TextArgument, IsACharRowOrOneStringAndNothingElse) {
    const std::string noText = "VELMAR:string:MustBeStringScalarOrCharacterVector";
    const std::string missing = "VELMAR:string:MissingNotSupported";
    struct Row {
        const char* what;
        unique_array array;
        std::string asRow;
        std::string asAny;
    };
    std::size_t column[] = {2, 1};
    auto charColumn =
        unique_array(harray::detail::do_create_numeric(2, column, hxCHAR_CLASS, hxREAL));
    auto* units = static_cast<char16_t*>(hxGetWritableData(charColumn.get()));
    units[0] = u'a';
    units[1] = u'b';
    Row rows[] = {
        {"null", nullptr, noText, noText},
        {"row", unique_array(hxCreateString("abc")), "text:abc", "text:abc"},
        {"0-by-0", unique_array(hxCreateString("")), "text:", "text:"},
        {"beyond the first plane", harray::create(u"\U0001F600"), "text:\U0001F600",
         "text:\U0001F600"},
        {"column", std::move(charColumn), noText, "text:ab"},
        {"matrix", unique_array(hxCreateCharMatrix({u"ab", u"cd"})), noText, "text:acbd"},
        {"string", hoststring::createStringArray(u"xyz"), "text:xyz", "text:xyz"},
        {"missing", hoststring::createStringArray(1, 1, {std::nullopt}), missing, missing},
        {"two strings", hoststring::createStringArray(1, 2, {u"a", u"b"}), noText, noText},
        {"number", unique_array(hxCreateDoubleScalar(1)), noText, noText},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(idOf(row.array.get(), true), row.asRow) << row.what;
        EXPECT_EQ(idOf(row.array.get(), false), row.asAny) << row.what;
    }
}

} // namespace
