// How calls reach members: coercion, refusals, outputs, properties, errors.
#include "widget.h"

namespace server_tests {
namespace {

struct Calls : ServerTest {
    ComPtr<IDispatch> widget = kit::createDispatch<Widget>();
};

TEST_F(Calls, ArgumentsOfOtherKindsAreConverted) {
    double number = 1.5;
    LONG whole = 4;
    ScopedVariant text = kit::toVariant(OleString(OLESTR("2.25")));
    ScopedVariant viaText;
    *viaText.inOut() = byReference(VT_BSTR, &text.inOut()->bstrVal);
    const VARIANT cases[] = {kit::toVariant(2.0).detach(),
                             kit::toVariant(LONG(3)).detach(),
                             kit::toVariant(true).detach(),
                             byReference(VT_R8, &number),
                             byReference(VT_I4, &whole),
                             byReference(VT_VARIANT, text.inOut()),
                             byReference(VT_BSTR, &text.inOut()->bstrVal)};
    const double expected[] = {2, 3, -1, 1.5, 4, 2.25, 2.25};
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        const VARIANT zero = kit::toVariant(0.0).detach();
        const auto outcome = invoke(widget.get(), dispidOf(widget.get(), OLESTR("Add")),
                                    DISPATCH_METHOD, {cases[i], zero});
        EXPECT_EQ(outcome.hr, S_OK) << i;
        EXPECT_EQ(outcome.result->vt, VT_R8) << i;
        EXPECT_EQ(outcome.result->dblVal, expected[i]) << i;
    }
}

TEST_F(Calls, WrongCallsAreRefusedWithTheIndexOfTheArgument) {
    constexpr UINT none = 99;
    const VARIANT one = kit::toVariant(1.0).detach();
    const VARIANT big = kit::toVariant(LONG(70000)).detach();
    const ScopedVariant word = kit::toVariant(OleString(OLESTR("word")));
    const struct {
        const OLECHAR* member;
        WORD flags;
        std::vector<VARIANT> arguments;
        HRESULT hr;
        UINT argument;
    } cases[] = {
        {OLESTR("Add"), DISPATCH_METHOD, {word.get(), one}, DISP_E_TYPEMISMATCH, 1},
        {OLESTR("Add"), DISPATCH_METHOD, {one, word.get()}, DISP_E_TYPEMISMATCH, 0},
        {OLESTR("Add"), DISPATCH_METHOD, {one}, DISP_E_BADPARAMCOUNT, none},
        {OLESTR("Add"), DISPATCH_METHOD, {one, one, one}, DISP_E_BADPARAMCOUNT, none},
        {OLESTR("Add"), DISPATCH_METHOD, {missing(), one}, DISP_E_PARAMNOTOPTIONAL, 1},
        {OLESTR("Add"), DISPATCH_PROPERTYGET, {one, one}, DISP_E_MEMBERNOTFOUND, none},
        {OLESTR("Narrow"), DISPATCH_METHOD, {big}, DISP_E_OVERFLOW, 0},
        {OLESTR("Twice"), DISPATCH_METHOD, {word.get()}, DISP_E_TYPEMISMATCH, 0},
        {OLESTR("Total"), DISPATCH_METHOD, {one}, DISP_E_TYPEMISMATCH, 0},
        {OLESTR("Weight"), DISPATCH_PROPERTYPUT, {one}, DISP_E_MEMBERNOTFOUND, none},
        {OLESTR("Count"), DISPATCH_PROPERTYPUT, {one}, DISP_E_MEMBERNOTFOUND, none},
        {OLESTR("Nothing"), DISPATCH_METHOD, {}, DISP_E_MEMBERNOTFOUND, none},
    };
    for (const auto& row : cases) {
        const auto outcome =
            invoke(widget.get(), dispidOf(widget.get(), row.member), row.flags, row.arguments);
        EXPECT_EQ(outcome.hr, row.hr) << platform::toNarrow(row.member);
        EXPECT_EQ(outcome.argumentError, row.argument) << platform::toNarrow(row.member);
    }
}

TEST_F(Calls, OnlyAPropertyPutTakesANamedArgument) {
    VARIANT value = kit::toVariant(1.0).detach();
    DISPID named = DISPID_PROPERTYPUT;
    DISPPARAMS withName{&value, &named, 1, 1};
    DISPPARAMS withoutName{&value, nullptr, 1, 0};
    auto hr = [&](const OLECHAR* name, WORD flags, DISPPARAMS& params, REFIID riid = IID_NULL) {
        return widget->Invoke(dispidOf(widget.get(), name), riid, 0, flags, &params, nullptr,
                              nullptr, nullptr);
    };
    EXPECT_EQ(hr(OLESTR("Narrow"), DISPATCH_METHOD, withName), DISP_E_NONAMEDARGS);
    EXPECT_EQ(hr(OLESTR("Tag"), DISPATCH_PROPERTYPUT, withoutName), DISP_E_PARAMNOTFOUND);
    EXPECT_EQ(hr(OLESTR("Tag"), DISPATCH_PROPERTYPUT, withName), S_OK);
    EXPECT_EQ(hr(OLESTR("Tag"), DISPATCH_PROPERTYPUT, withName, IID_IDispatch),
              DISP_E_UNKNOWNINTERFACE);
    named = 3;
    EXPECT_EQ(hr(OLESTR("Tag"), DISPATCH_PROPERTYPUT, withName), DISP_E_NONAMEDARGS);
}

TEST_F(Calls, OutputsReachTheCallerInTheKindHeGave) {
    const VARIANT seven = kit::toVariant(LONG(7)).detach();
    const VARIANT two = kit::toVariant(LONG(2)).detach();
    const DISPID divide = dispidOf(widget.get(), OLESTR("Divide"));
    LONG quotient = -1;
    ScopedBstr note;
    EXPECT_EQ(invoke(widget.get(), divide, DISPATCH_METHOD,
                     {seven, two, byReference(VT_I4, &quotient), byReference(VT_BSTR, note.put())})
                  .hr,
              S_OK);
    EXPECT_EQ(quotient, 3);
    EXPECT_EQ(platform::viewOf(note.get()), OLESTR("divided"));

    SHORT small = -1;
    ScopedVariant any = kit::toVariant(OleString(OLESTR("old")));
    EXPECT_EQ(invoke(widget.get(), divide, DISPATCH_METHOD,
                     {seven, two, byReference(VT_I2, &small), byReference(VT_VARIANT, any.inOut())})
                  .hr,
              S_OK);
    EXPECT_EQ(small, 3);
    ASSERT_EQ(any->vt, VT_BSTR);
    EXPECT_EQ(platform::viewOf(any->bstrVal), OLESTR("divided"));
}

TEST_F(Calls, AFailingMemberLeavesOutputsAloneAndFillsTheExceptionRecord) {
    LONG quotient = -1;
    BSTR note = nullptr;
    const auto outcome =
        invoke(widget.get(), dispidOf(widget.get(), OLESTR("Divide")), DISPATCH_METHOD,
               {kit::toVariant(LONG(7)).detach(), kit::toVariant(LONG(0)).detach(),
                byReference(VT_I4, &quotient), byReference(VT_BSTR, &note)});
    EXPECT_EQ(outcome.hr, DISP_E_EXCEPTION);
    EXPECT_EQ(quotient, -1);
    EXPECT_EQ(note, nullptr);
    EXPECT_EQ(platform::viewOf(outcome.excepInfo.bstrSource), OLESTR("Widget"));
    EXPECT_EQ(platform::viewOf(outcome.excepInfo.bstrDescription), OLESTR("No."));
    EXPECT_EQ(platform::viewOf(outcome.excepInfo.bstrHelpFile), OLESTR("widget.chm"));
    EXPECT_EQ(outcome.excepInfo.dwHelpContext, 7u);
    EXPECT_EQ(outcome.excepInfo.wCode, 12);
    EXPECT_EQ(outcome.excepInfo.scode, E_ABORT);
}

TEST_F(Calls, AnInOutTextIsReadAndReplaced) {
    ScopedBstr text = platform::makeBstr(OLESTR("ab"));
    const auto outcome = invoke(widget.get(), dispidOf(widget.get(), OLESTR("twice")),
                                DISPATCH_METHOD, {byReference(VT_BSTR, text.inOut())});
    EXPECT_EQ(outcome.hr, S_OK);
    EXPECT_EQ(platform::viewOf(text.get()), OLESTR("abab"));
}

TEST_F(Calls, WhatIsOptionalMayBeLeftOut) {
    EXPECT_EQ(method(widget.get(), OLESTR("Pad"), OleString(OLESTR("a"))).text(), "8:a.");
    EXPECT_EQ(method(widget.get(), OLESTR("Pad"), OleString(OLESTR("a")), LONG(3)).text(),
              "8:a...");
    ScopedVariant marker;
    *marker.inOut() = missing();
    EXPECT_EQ(method(widget.get(), OLESTR("Pad"), OleString(OLESTR("a")), std::move(marker)).text(),
              "8:a.");
}

TEST_F(Calls, EnumerationsCodesObjectsAndArraysPass) {
    IDispatch* const object = widget.get();
    EXPECT_EQ(method(object, OLESTR("Invert"), Shade::Dark).text(), "3:7");
    EXPECT_EQ(method(object, OLESTR("IsObject"), ComPtr<IDispatch>(widget)).text(), "11:True");
    EXPECT_EQ(method(object, OLESTR("IsObject"), ComPtr<IUnknown>::borrow(object)).text(),
              "11:True");
    EXPECT_EQ(method(object, OLESTR("IsObject"), ComPtr<IDispatch>()).text(), "11:False");
    EXPECT_EQ(method(object, OLESTR("KindOf"), CY{}).text(), "3:6");
    const Outcome codes[] = {method(object, OLESTR("Code"), kit::HResult{E_ABORT}),
                             method(object, OLESTR("Code"), LONG(E_ABORT)),
                             method(object, OLESTR("Code"), kit::ErrorCode{E_ABORT})};
    for (const auto& outcome : codes) {
        EXPECT_EQ(outcome.result->vt, VT_HRESULT);
        EXPECT_EQ(outcome.result->scode, E_ABORT);
    }

    const auto texts = method(object, OLESTR("Reversed"),
                              std::vector<OleString>{OLESTR("a"), OLESTR(""), OLESTR("c")});
    ASSERT_EQ(texts.result->vt, VT_ARRAY | VT_BSTR);
    EXPECT_EQ(kit::ValueTraits<std::vector<OleString>>::read(texts.result->parray),
              (std::vector<OleString>{OLESTR("c"), OLESTR(""), OLESTR("a")}));

    SAFEARRAYBOUND bounds[] = {{2, 0}, {3, 1}};
    kit::Array<double> matrix{platform::ScopedSafeArray::adopt(SafeArrayCreate(VT_R8, 2, bounds))};
    std::ranges::fill(kit::elementsOf<double>(matrix.array.get()), 1.5);
    EXPECT_EQ(method(object, OLESTR("Total"), std::move(matrix)).text(), "5:9");
}

TEST_F(Calls, PropertiesAreReadAndWritten) {
    IDispatch* const object = widget.get();
    EXPECT_EQ(put(object, OLESTR("Name"), OleString(OLESTR("new"))).hr, S_OK);
    EXPECT_EQ(get(object, OLESTR("Name")).text(), "8:new");
    EXPECT_EQ(call(object, OLESTR("Name"), DISPATCH_METHOD | DISPATCH_PROPERTYGET).text(), "8:new");
    EXPECT_EQ(put(object, OLESTR("Tag"), CY{.int64 = 5}).hr, S_OK);
    EXPECT_EQ(get(object, OLESTR("Tag")).text(), "6:0.0005");
    EXPECT_EQ(get(object, OLESTR("Count")).text(), "5:3");
    EXPECT_EQ(get(object, OLESTR("Weight")).text(), "3:5");

    EXPECT_EQ(put(object, OLESTR("Partner"), ComPtr<IDispatch>()).hr, DISP_E_MEMBERNOTFOUND);
    const auto other = kit::createDispatch<Widget>();
    EXPECT_EQ(call(object, OLESTR("Partner"), DISPATCH_PROPERTYPUTREF, other).hr, S_OK);
    EXPECT_EQ(get(object, OLESTR("Partner")).result->pdispVal, other.get());
}

TEST_F(Calls, AnIndexedPropertyTakesItsValueLast) {
    IDispatch* const object = widget.get();
    EXPECT_EQ(put(object, OLESTR("Cell"), LONG(2), LONG(1), 21.5).hr, S_OK);
    EXPECT_EQ(get(object, OLESTR("Cell"), LONG(0)).text(), "5:0.5");
    EXPECT_EQ(put(object, OLESTR("Cell"), LONG(2), 20.0).hr, S_OK);
    EXPECT_EQ(get(object, OLESTR("Cell"), LONG(1), LONG(2)).text(), "5:12");
    EXPECT_EQ(put(object, OLESTR("Cell"), 1.0).hr, DISP_E_BADPARAMCOUNT);
}

TEST_F(Calls, ARawMemberAnswersAsItLikes) {
    auto outcome = method(widget.get(), OLESTR("Odd"), 1.0, 2.0, 3.0, 4.0);
    EXPECT_EQ(outcome.hr, S_FALSE);
    EXPECT_EQ(outcome.text(), "3:4");
}

TEST_F(Calls, NamesAreKnownInAnyCaseUnlessWithheld) {
    EXPECT_EQ(dispidOf(widget.get(), OLESTR("NAME")), DISPID_VALUE);
    EXPECT_EQ(dispidOf(widget.get(), OLESTR("odd")), 0x60020000);
    EXPECT_EQ(dispidOf(widget.get(), OLESTR("weight")), 1);
    EXPECT_EQ(dispidOf(widget.get(), OLESTR("Lie")), DISPID_UNKNOWN);
    OleString names[] = {OLESTR("Add"), OLESTR("a")};
    LPOLESTR pointers[] = {names[0].data(), names[1].data()};
    DISPID dispids[2] = {};
    EXPECT_EQ(widget->GetIDsOfNames(IID_NULL, pointers, 2, 0, dispids), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(dispids[1], DISPID_UNKNOWN);
    EXPECT_NE(dispids[0], DISPID_UNKNOWN);
}

TEST_F(Calls, TheLogKeepsWhatWasAsked) {
    kit::CallLog log;
    LONG quotient = 0;
    BSTR note = nullptr;
    const DISPID divide = dispidOf(widget.get(), OLESTR("Divide"));
    invoke(widget.get(), divide, DISPATCH_METHOD,
           {kit::toVariant(LONG(7)).detach(), kit::toVariant(LONG(2)).detach(),
            byReference(VT_I4, &quotient), byReference(VT_BSTR, &note)});
    SysFreeString(note);
    put(widget.get(), OLESTR("Name"), OleString(OLESTR("n")));
    ASSERT_EQ(log.calls().size(), 2u);
    const auto& first = log.calls()[0];
    EXPECT_EQ(first.object, "Widget");
    EXPECT_EQ(first.dispid, divide);
    EXPECT_EQ(first.flags, DISPATCH_METHOD);
    EXPECT_EQ(first.lcid, LOCALE_USER_DEFAULT);
    EXPECT_EQ(first.riid, IID_NULL);
    ASSERT_EQ(first.arguments.size(), 4u);
    EXPECT_EQ(first.arguments[3].value->lVal, 7);
    EXPECT_EQ(first.arguments[1].vt, VT_BYREF | VT_I4);
    EXPECT_EQ(first.arguments[1].value->vt, VT_I4);
    EXPECT_TRUE(first.named.empty());
    EXPECT_TRUE(first.wantsResult && first.wantsExcepInfo && first.wantsArgumentError);
    EXPECT_EQ(log.calls()[1].named, std::vector<DISPID>{DISPID_PROPERTYPUT});
}

} // namespace
} // namespace server_tests
