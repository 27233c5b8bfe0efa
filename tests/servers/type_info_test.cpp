// Type libraries say what was declared.
#include "platform/typeinfo_holders.h"
#include "widget.h"

#include <map>

namespace server_tests {
namespace {

using platform::FuncDescHolder;
using platform::TypeAttrHolder;
using platform::VarDescHolder;

std::string nameOf(ITypeInfo* info, MEMBERID memid = -1) {
    ScopedBstr name;
    info->GetDocumentation(memid, name.put(), nullptr, nullptr, nullptr);
    return platform::toNarrow(platform::viewOf(name.get()));
}

std::string textOf(ITypeInfo* owner, const TYPEDESC& type) {
    static const std::map<VARTYPE, std::string> words = {
        {VT_I2, "I2"},           {VT_I4, "I4"},           {VT_R8, "R8"},       {VT_BSTR, "BSTR"},
        {VT_DISPATCH, "object"}, {VT_BOOL, "BOOL"},       {VT_VARIANT, "any"}, {VT_VOID, "void"},
        {VT_HRESULT, "HRESULT"}, {VT_UINT_PTR, "address"}};
    if (type.vt == VT_PTR) return textOf(owner, *type.lptdesc) + "*";
    if (type.vt == VT_SAFEARRAY) return "array(" + textOf(owner, *type.lptdesc) + ")";
    if (type.vt == VT_CARRAY) {
        std::string text = textOf(owner, type.lpadesc->tdescElem);
        for (USHORT dim = 0; dim < type.lpadesc->cDims; ++dim) {
            const auto& bound = type.lpadesc->rgbounds[dim];
            text.append("[").append(std::to_string(bound.lLbound)).append("+");
            text.append(std::to_string(bound.cElements)).append("]");
        }
        return text;
    }
    if (type.vt == VT_USERDEFINED) {
        ComPtr<ITypeInfo> target;
        owner->GetRefTypeInfo(type.hreftype, target.put());
        return target ? nameOf(target.get()) : "unresolved";
    }
    const auto word = words.find(type.vt);
    return word == words.end() ? std::to_string(type.vt) : word->second;
}

std::string flagsOf(WORD flags) {
    std::string text;
    const std::pair<int, const char*> words[] = {{PARAMFLAG_FIN, "in "},
                                                 {PARAMFLAG_FOUT, "out "},
                                                 {PARAMFLAG_FRETVAL, "retval "},
                                                 {PARAMFLAG_FOPT, "optional "}};
    for (const auto& [bit, word] : words)
        if (flags & bit) text += word;
    return text;
}

// "DISPID kind result name(parameters) [flags, optional count]" of the function at an index.
std::string functionText(ITypeInfo* info, UINT index) {
    const FuncDescHolder desc(info, &ITypeInfo::GetFuncDesc, index);
    if (!desc) return "none";
    const char* kind = desc->invkind == INVOKE_FUNC          ? "call"
                       : desc->invkind == INVOKE_PROPERTYGET ? "get"
                       : desc->invkind == INVOKE_PROPERTYPUT ? "put"
                                                             : "putref";
    std::array<BSTR, 9> names{};
    UINT count = 0;
    info->GetNames(desc->memid, names.data(), 9, &count);
    std::string text = std::to_string(desc->memid) + " " + kind + " " +
                       textOf(info, desc->elemdescFunc.tdesc) + " " + nameOf(info, desc->memid) +
                       "(";
    for (SHORT i = 0; i < desc->cParams; ++i) {
        const ELEMDESC& param = desc->lprgelemdescParam[i];
        const auto at = static_cast<UINT>(i) + 1;
        if (i) text += ", ";
        text += flagsOf(param.paramdesc.wParamFlags) + textOf(info, param.tdesc);
        if (desc->invkind != INVOKE_PROPERTYPUT && desc->invkind != INVOKE_PROPERTYPUTREF &&
            at < count)
            text.append(" ").append(platform::toNarrow(platform::viewOf(names[at])));
    }
    for (BSTR name : names)
        SysFreeString(name);
    text += ")";
    if (desc->wFuncFlags) text += " flags " + std::to_string(desc->wFuncFlags);
    if (desc->cParamsOpt) text += " optional " + std::to_string(desc->cParamsOpt);
    return text;
}

// Without the seven methods that every dispinterface begins with.
std::vector<std::string> functions(ITypeInfo* info) {
    std::vector<std::string> result;
    const TypeAttrHolder attr(info, &ITypeInfo::GetTypeAttr);
    if (!attr) return result;
    for (UINT i = attr->typekind == TKIND_DISPATCH ? 7 : 0; i < attr->cFuncs; ++i)
        result.push_back(functionText(info, i));
    return result;
}

ComPtr<ITypeInfo> baseOf(ITypeInfo* info) {
    HREFTYPE reference = 0;
    ComPtr<ITypeInfo> base;
    if (SUCCEEDED(info->GetRefTypeOfImplType(0, &reference)))
        info->GetRefTypeInfo(reference, base.put());
    return base;
}

struct TypeInformation : ServerTest {
    ComPtr<ITypeInfo> info;
    ComPtr<ITypeLib> library;

    void SetUp() override {
        const auto widget = kit::createDispatch<Widget>();
        UINT count = 0;
        EXPECT_EQ(widget->GetTypeInfoCount(&count), S_OK);
        EXPECT_EQ(count, 1u);
        EXPECT_EQ(widget->GetTypeInfo(1, 0, info.put()), DISP_E_BADINDEX);
        ASSERT_EQ(widget->GetTypeInfo(0, 0, info.put()), S_OK);
        UINT index = 0;
        ASSERT_EQ(info->GetContainingTypeLib(library.put(), &index), S_OK);
    }
};

TEST_F(TypeInformation, FunctionsAreDeclaredFromTheirSignatures) {
    const std::vector<std::string> expected = {
        "1 get HRESULT Weight(out retval I4* result)", // inherited
        "2 call R8 Add(in R8 a, in R8 b)",
        "3 call HRESULT Narrow(in I2 value, out retval I2* result)",
        "4 call void Divide(in I4 a, in I4 b, out I4* quotient, out BSTR* note)",
        "5 call void Twice(in out BSTR* text)",
        "6 call HRESULT Pad(in BSTR text, in optional I4 count, out retval BSTR* result)"
        " optional 1",
        "7 call HRESULT Invert(in Shade shade, out retval Shade* result)",
        "8 call HRESULT Reversed(in array(BSTR) texts, out retval array(BSTR)* result)",
        "9 call HRESULT Total(in array(R8) values, out retval R8* result)",
        "10 call HRESULT IsObject(in object object, out retval BOOL* result) flags 64",
        "11 call HRESULT KindOf(in any value, out retval I4* result) flags 1",
        "12 call HRESULT Code(in HRESULT value, out retval HRESULT* result)",
        "0 get HRESULT Name(out retval BSTR* result)",
        "0 put void Name(in BSTR)",
        "14 get HRESULT Partner(out retval object* result)",
        "14 putref void Partner(in object)",
        "15 get HRESULT Cell(in I4 row, in optional I4 column, out retval R8* result) optional 1",
        "15 put void Cell(in I4, in optional I4, in R8) optional 1",
        "1610743808 call any* Odd(in I4[0+3][1+2] numbers, in Point* where,"
        " in optional Length size)",
        "16 get HRESULT Lie(out retval address* result)",
    };
    EXPECT_EQ(functions(info.get()), expected);
}

TEST_F(TypeInformation, VariablesAreThere) {
    const VarDescHolder tag(info.get(), &ITypeInfo::GetVarDesc, 0u);
    const VarDescHolder count(info.get(), &ITypeInfo::GetVarDesc, 1u);
    ASSERT_TRUE(tag && count);
    EXPECT_EQ(nameOf(info.get(), tag->memid), "Tag");
    EXPECT_EQ(tag->varkind, VAR_DISPATCH);
    EXPECT_EQ(tag->elemdescVar.tdesc.vt, VT_VARIANT);
    EXPECT_EQ(tag->wVarFlags, 0);
    EXPECT_EQ(nameOf(info.get(), count->memid), "Count");
    EXPECT_EQ(count->elemdescVar.tdesc.vt, VT_R8);
    EXPECT_EQ(count->wVarFlags, VARFLAG_FREADONLY);
}

TEST_F(TypeInformation, ADispinterfaceExtendsIDispatchWhateverItInherits) {
    const auto base = baseOf(info.get());
    ASSERT_TRUE(base);
    EXPECT_EQ(nameOf(base.get()), "IDispatch");
    const auto root = baseOf(base.get());
    ASSERT_TRUE(root);
    EXPECT_EQ(nameOf(root.get()), "IUnknown");
}

TEST_F(TypeInformation, EventsBelongToTheDefaultSourceOfTheCoclass) {
    ComPtr<ITypeInfo> coclass;
    ASSERT_EQ(library->GetTypeInfoOfGuid(widgetClass, coclass.put()), S_OK);
    std::vector<std::pair<std::string, INT>> listed;
    const TypeAttrHolder attr(coclass.get(), &ITypeInfo::GetTypeAttr);
    ASSERT_TRUE(attr);
    EXPECT_EQ(attr->typekind, TKIND_COCLASS);
    for (UINT i = 0; i < attr->cImplTypes; ++i) {
        HREFTYPE reference = 0;
        INT flags = 0;
        ComPtr<ITypeInfo> implemented;
        ASSERT_EQ(coclass->GetRefTypeOfImplType(i, &reference), S_OK);
        ASSERT_EQ(coclass->GetRefTypeInfo(reference, implemented.put()), S_OK);
        ASSERT_EQ(coclass->GetImplTypeFlags(i, &flags), S_OK);
        listed.emplace_back(nameOf(implemented.get()), flags);
    }
    EXPECT_EQ(listed, (std::vector<std::pair<std::string, INT>>{
                          {"IWidget", 1}, {"IWidgetExtra", 0}, {"IWidgetEvents", 3}}));
    ComPtr<ITypeInfo> events;
    ASSERT_EQ(library->GetTypeInfoOfGuid(widgetEvents, events.put()), S_OK);
    EXPECT_EQ(functions(events.get()),
              (std::vector<std::string>{"1 call void Moved(in R8 x, in object* who)",
                                        "2 call void Closed()"}));
}

TEST_F(TypeInformation, ConstantsKeepTheirValuesAndWidths) {
    ComPtr<ITypeInfo> shade;
    ASSERT_EQ(library->GetTypeInfo(0, shade.put()), S_OK);
    EXPECT_EQ(nameOf(shade.get()), "Shade");
    const std::tuple<std::string, VARTYPE, LONGLONG> expected[] = {
        {"dark", VT_I4, -5}, {"light", VT_I4, 7}, {"wide", VT_I8, 1LL << 40}};
    UINT index = 0;
    for (const auto& [name, vt, value] : expected) {
        const VarDescHolder desc(shade.get(), &ITypeInfo::GetVarDesc, index++);
        ASSERT_TRUE(desc);
        ASSERT_EQ(desc->varkind, VAR_CONST);
        EXPECT_EQ(nameOf(shade.get(), desc->memid), name);
        EXPECT_EQ(desc->lpvarValue->vt, vt);
        EXPECT_EQ(vt == VT_I8 ? desc->lpvarValue->llVal : desc->lpvarValue->lVal, value);
    }
}

// An interface that isn't a dispinterface, and a class that says nothing of itself.
struct Plain final : kit::DispatchObject {
    explicit Plain(const kit::ClassDefinition& definition) : DispatchObject(definition) {}
    LONG one() { return 1; }
};

TEST_F(TypeInformation, MayBeOfAnotherKindOrWithheld) {
    constexpr GUID id = kit::guid("0F3B3A30-2222-4E6B-8A11-000000000001");
    constexpr GUID iid = kit::guid("0F3B3A30-2222-4E6B-8A11-000000000002");
    const auto custom = kit::ClassBuilder<Plain>("Plain", id, iid)
                            .interfaceKind(TKIND_INTERFACE)
                            .method("One", &Plain::one)
                            .build();
    const TypeAttrHolder attr(custom->typeInfo(), &ITypeInfo::GetTypeAttr);
    ASSERT_TRUE(attr);
    EXPECT_EQ(attr->typekind, TKIND_INTERFACE);
    EXPECT_EQ(functions(custom->typeInfo()),
              std::vector<std::string>{"1 call HRESULT One(out retval I4* result)"});

    const auto silent = kit::ClassBuilder<Plain>("Plain", id, iid)
                            .method("One", &Plain::one)
                            .withoutTypeInfo()
                            .build();
    const auto object = kit::createDispatch<Plain>(*silent);
    UINT count = 9;
    ComPtr<ITypeInfo> none;
    EXPECT_EQ(object->GetTypeInfoCount(&count), S_OK);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(object->GetTypeInfo(0, 0, none.put()), E_NOTIMPL);
    EXPECT_EQ(method(object.get(), OLESTR("one")).text(), "3:1");
}

} // namespace
} // namespace server_tests
