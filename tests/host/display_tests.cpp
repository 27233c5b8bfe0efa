// What a person sees of any array.
#include "tests/host/host_test.h"

#include <algorithm>
#include <cmath>

using namespace host_test;

namespace {

std::string shown(const unique_array& array) { return velmar::displayText(array.get()); }

std::string printed(const std::function<void()>& action) {
    std::string written;
    velmar::setOutput([&](std::string_view part) { written += part; });
    action();
    velmar::setOutput({});
    return written;
}

unique_array matrix(std::size_t rows, std::size_t columns, const std::vector<double>& numbers) {
    unique_array array = zeros(rows, columns);
    std::ranges::copy(numbers, static_cast<double*>(hxGetWritableData(array.get())));
    return array;
}

unique_array list(const std::vector<const char*>& texts, std::size_t rows = 1) {
    unique_array cell(hxCreateCellMatrix(rows, texts.size() / rows));
    for (std::size_t i = 0; i < texts.size(); ++i)
        hxSetCell(cell.get(), i, text(texts[i]).release());
    return cell;
}

} // namespace

class Display : public HostTest {};

TEST_F(Display, OfNumbersIsShortAndAligned) {
    const struct {
        unique_array array;
        const char* text;
    } rows[] = {
        {number(5), "5\n"},
        {number(3.14159265), "3.1416\n"},
        {number(-0.0), "0\n"},
        {number(1e10), "10000000000\n"},
        {number(1.5e-7), "1.5e-07\n"},
        {number(std::nan("")), "NaN\n"},
        {number(-HUGE_VAL), "-Inf\n"},
        {number(1, hxLOGICAL_CLASS), "1\n"},
        {number(-7, hxINT8_CLASS), "-7\n"},
        {row({1, -20, 300}), "   1   -20   300\n"},
        {matrix(2, 2, {1.5, 2, -10.25, NAN}), "   1.5000   -10.2500\n   2.0000        NaN\n"},
        {row({1e-9, 1}), "   1e-09   1\n"},
        {zeros(0, 0), "   []\n"},
        {zeros(0, 3, hxINT8_CLASS), "   0x3 empty int8\n"}};
    for (const auto& row : rows)
        EXPECT_EQ(shown(row.array), row.text);
    EXPECT_EQ(velmar::displayText(nullptr), "   []\n");
}

TEST_F(Display, OfComplexSparsePagedAndWideArrays) {
    const std::size_t one[] = {1, 1};
    const unique_array complex(hxCreateNumericArray(2, one, hxDOUBLE_CLASS, hxCOMPLEX));
    static_cast<double*>(hxGetWritableData(complex.get()))[0] = 1;
    static_cast<double*>(hxGetWritableData(complex.get()))[1] = -2;
    EXPECT_EQ(shown(complex), "1 - 2i\n");

    const unique_array sparse(hxCreateSparse(3, 2, 4, hxREAL));
    EXPECT_EQ(shown(sparse), "   all zero sparse: 3x2\n");
    static_cast<double*>(hxGetWritableData(sparse.get()))[0] = 8;
    hxGetIr(sparse.get())[0] = 2;
    hxGetJc(sparse.get())[2] = 1;
    EXPECT_EQ(shown(sparse), "   (3,2)   8\n");

    const std::size_t paged[] = {1, 2, 2};
    const unique_array pages(hxCreateNumericArray(3, paged, hxUINT8_CLASS, hxREAL));
    EXPECT_EQ(shown(pages), "(:,:,1) =\n   0   0\n\n(:,:,2) =\n   0   0\n");

    const std::string wide = shown(zeros(1, 30));
    EXPECT_EQ(wide.substr(0, wide.find('\n')), " Columns 1 to 20");
    EXPECT_NE(wide.find(" Columns 21 to 30\n"), std::string::npos);
}

TEST_F(Display, OfText) {
    EXPECT_EQ(shown(text("gr\xC3\xBC\xC3\x9F")), "gr\xC3\xBC\xC3\x9F\n");
    EXPECT_EQ(shown(text("")), "\n");
    EXPECT_EQ(shown(unique_array(hxCreateCharMatrix({u"ab", u"c"}))), "ab\nc \n");
    EXPECT_EQ(shown(string(u"abc")), "abc\n");
    EXPECT_EQ(shown(harray::create({u"a\0b\x1B[c\r\n\td\r", 11})),
              "a\xE2\x90\x80"
              "b\xE2\x90\x9B[c\n\td\xE2\x90\x8D\n");
    EXPECT_EQ(shown(hoststring::createStringArray(1, 3, {u"a", std::nullopt, u"\u00fc"})),
              "   \"a\"   <missing>   \"\xC3\xBC\"\n");
    EXPECT_EQ(shown(hoststring::createStringArray(0, 1, {})), "   0x1 empty string\n");
}

TEST_F(Display, OfStructsAndCellsSummarisesWhatTheyHold) {
    const std::string wide(58, 'y');
    const std::string full(59, 'x');
    const std::pair<unique_array, std::string> values[] = {
        {number(2.5), "2.5"},
        {text("hi"), "'hi'"},
        {text((full + "\xF0\x9D\x84\x9E").c_str()), "'" + full + "...'"},
        {harray::create({u"a\n\0", 3}), "'a \xE2\x90\x80'"},
        {zeros(3, 4, hxSINGLE_CLASS), "[3x4 single]"},
        {row({1, 2}), "[1 2]"},
        {list({}), "{}"},
        {list({"red", "green"}), "{'red', 'green'}"},
        {list({wide.c_str(), "z"}), "{1x2 cell}"},
        {unique_array(), "[]"}};
    const char* names[] = {"n"};
    for (const auto& [value, shownAs] : values) {
        const unique_array record(hxCreateStructMatrix(1, 1, 1, names));
        if (value) hxSetField(record.get(), 0, "n", hxCreateSharedDataCopy(value.get()));
        EXPECT_EQ(shown(record), "    n: " + shownAs + "\n");
    }
    const char* two[] = {"n", "longer"};
    const unique_array record(hxCreateStructMatrix(1, 1, 2, two));
    EXPECT_EQ(shown(record), "         n: []\n    longer: []\n");
    EXPECT_EQ(shown(unique_array(hxCreateStructMatrix(1, 2, 1, names))),
              "  1x2 struct with fields:\n    n\n");

    const unique_array cell = list({"", "", "", "", "a x b]", ""}, 2);
    hxReplaceCell(cell.get(), 0, hxCreateSharedDataCopy(record.get()));
    hxReplaceCell(cell.get(), 1, string(u"s").release());
    hxReplaceCell(cell.get(), 2, hxCreateCellMatrix(1, 2));
    hxReplaceCell(cell.get(), 3, row({1, 2}).release());
    hxReplaceCell(cell.get(), 5, velmar::createFunctionHandle("@(x) x", {}).release());
    EXPECT_EQ(shown(cell), "   {1x1 struct}   {1x2 cell}   {'a x b]'}\n"
                           "   {\"s\"}          {[1 2]}      {@(x) x}\n");
    EXPECT_EQ(shown(unique_array(hxCreateCellMatrix(0, 0))), "   {}\n");
}

TEST_F(Display, OfLargeArraysIsAPart) {
    const unique_array large = zeros(2000, 6);
    static_cast<double*>(hxGetWritableData(large.get()))[2001] = 7;
    const std::string numbers = shown(large);
    EXPECT_TRUE(numbers.starts_with("   0   0   0   0   0   0\n   0   7   0")) << numbers;
    EXPECT_TRUE(numbers.ends_with("\n   ... the first 20x6 of 2000x6 double\n")) << numbers;
    EXPECT_EQ(std::ranges::count(numbers, '\n'), 21);

    const unique_array cell(hxCreateCellMatrix(1, 20000));
    hxSetCell(cell.get(), 9, text("tenth").release());
    const std::string cells = shown(cell);
    EXPECT_NE(cells.find("{[]}   {'tenth'}\n   ... the first 1x10 of 1x20000 cell\n"),
              std::string::npos)
        << cells;
    EXPECT_EQ(shown(zeros(1, 10000, hxINT8_CLASS)).find("..."), std::string::npos);
}

TEST_F(Display, OfClassesIsTheEmbeddingPrograms) {
    const TestClass plain(ClassSpec{.methods = {{"Go", {"class"}}}});
    const unique_array object = plain.makeArray();
    const auto methods = [&] {
        return printed([&] { velmar::call("methods", 0, {object.get()}); });
    };
    velmar::setClassDisplay(
        [](const hxArray* one) { return hxGetClassName(one) + std::string("!"); });
    EXPECT_EQ(methods(), plain.id().str() + "!");
    velmar::setClassDisplay({});
    EXPECT_EQ(methods(), "\nMethods for class " + plain.id().str() + ":\n\nGo\n\n");
}

TEST_F(Display, OfObjectsAsksTheirClass) {
    MethodSpec header{"getHeader", {"any"}, {"unicodeString"}};
    header.access = 1;
    header.body = [](Call call) { call.give(new std::u16string(u"\tmine\n")); };
    const TestClass shape({{header}});
    const TestClass plain({});
    const unique_array object = shape.makeArray();
    EXPECT_EQ(shown(object), "\tmine\n");
    EXPECT_EQ(shown(plain.makeArray()), "  " + plain.id().str() + " object\n");
    EXPECT_EQ(shown(plain.makeArray(3)), "  1x3 " + plain.id().str() + " array\n");
    hoGetArrayElement(object.get(), 0)->destroy(hos::HOSGetPublicClient());
    EXPECT_EQ(shown(object), "  handle to a deleted " + shape.id().str() + " object\n");
}

TEST_F(Display, IsWhatDispPrintsOrGives) {
    const unique_array five = number(5);
    EXPECT_EQ(printed([&] { velmar::call("disp", 0, {five.get()}); }), "5\n");
    EXPECT_EQ(printed([&] {
                  const velmar::Arrays given = velmar::call("disp", 1, {five.get()});
                  EXPECT_EQ(textOf(given[0].get()), "5\n");
              }),
              "");
    EXPECT_EQ(errorOf([] { velmar::call("disp", 0, {}); }), "VELMAR:minrhs");
}
