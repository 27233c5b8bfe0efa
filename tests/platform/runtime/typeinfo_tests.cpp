// A server's description of itself, written through ICreateTypeLib and read back.
#include "platform/com.h"
#include "platform/holders.h"
#include "platform/typeinfo_holders.h"
#include "system_support.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace platform {
namespace {

constexpr GUID libraryId = {0x5A6F9C11, 0x1D5B, 0x4C37, {0x8E, 1, 2, 3, 4, 5, 6, 7}};
constexpr GUID standardId = {0x00020430, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
constexpr GUID dispatchId = {0x5A6F9C12, 0x1D5B, 0x4C37, {0x8E, 1, 2, 3, 4, 5, 6, 7}};

// Names are handed over as changeable text, which nobody changes.
LPOLESTR text(const OLECHAR* fixed) { return const_cast<LPOLESTR>(fixed); }

std::string taken(BSTR owned) {
    const ScopedBstr holder = ScopedBstr::adopt(owned);
    return owned ? toNarrow(viewOf(owned)) : "(null)";
}

class TypeInfo : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(CreateTypeLib2(SYS_WIN64, OLESTR("sample.tlb"), library_.put()), S_OK);
        library_->SetName(text(OLESTR("Sample")));
        library_->SetGuid(libraryId);
        library_->SetVersion(2, 1);
        library_->SetLcid(0x409);
        library_->SetHelpFileName(text(OLESTR("sample.hlp")));
    }
    void TearDown() override {
        expectDescriptionsOut(0);
        // Each reference to the library or one of its types is one of these.
        library_->AddRef();
        EXPECT_EQ(library_->Release(), 1u);
    }

    ComPtr<ICreateTypeInfo> create(const OLECHAR* name, TYPEKIND kind) {
        ComPtr<ICreateTypeInfo> type;
        EXPECT_EQ(library_->CreateTypeInfo(text(name), kind, type.put()), S_OK);
        return type;
    }

    static ComPtr<ITypeInfo> reading(const ComPtr<ICreateTypeInfo>& type) {
        return queryInterface<ITypeInfo>(type.get(), IID_ITypeInfo);
    }

    // The size of the record that a parameter points at.
    static ULONG sizeOf(ITypeInfo* info, const ELEMDESC& parameter) {
        ComPtr<ITypeInfo> record;
        EXPECT_EQ(info->GetRefTypeInfo(parameter.tdesc.lptdesc->hreftype, record.put()), S_OK);
        return TypeAttrHolder(record.get(), &ITypeInfo::GetTypeAttr)->cbSizeInstance;
    }

    static HREFTYPE refer(const ComPtr<ICreateTypeInfo>& from, ITypeInfo* to) {
        HREFTYPE reference = 0;
        EXPECT_EQ(from->AddRefTypeInfo(to, &reference), S_OK);
        return reference;
    }

    ComPtr<ITypeInfo> dispatchInfo() {
        ComPtr<ITypeLib> standard;
        EXPECT_EQ(LoadRegTypeLib(standardId, 2, 0, 0, standard.put()), S_OK);
        ComPtr<ITypeInfo> dispatch;
        EXPECT_EQ(standard->GetTypeInfoOfGuid(IID_IDispatch, dispatch.put()), S_OK);
        return dispatch; // keeps its library alive
    }

    static FUNCDESC function(MEMBERID memid, INVOKEKIND kind, VARTYPE result) {
        FUNCDESC function{};
        function.memid = memid;
        function.funckind = FUNC_DISPATCH;
        function.invkind = kind;
        function.elemdescFunc.tdesc.vt = result;
        return function;
    }

    // A dispinterface with a method of two parameters, the second with a default value, and a
    // property that can be read and put.
    ComPtr<ICreateTypeInfo> createCounter() {
        const auto type = create(OLESTR("ICounter"), TKIND_DISPATCH);
        EXPECT_EQ(type->SetGuid(dispatchId), S_OK);
        EXPECT_EQ(type->SetDocString(text(OLESTR("counts"))), S_OK);
        EXPECT_EQ(type->AddImplType(0, refer(type, dispatchInfo().get())), S_OK);

        ScopedVariant standardStep;
        standardStep->vt = VT_BSTR;
        standardStep->bstrVal = makeBstr(OLESTR("one")).detach();
        PARAMDESCEX extra{sizeof(PARAMDESCEX), standardStep.get()};
        TYPEDESC number{};
        number.vt = VT_I4;
        ELEMDESC parameters[2]{};
        parameters[0].tdesc.vt = VT_PTR;
        parameters[0].tdesc.lptdesc = &number;
        parameters[1].tdesc.vt = VT_BSTR;
        parameters[1].paramdesc.wParamFlags = PARAMFLAG_FOPT | PARAMFLAG_FHASDEFAULT;
        parameters[1].paramdesc.pparamdescex = &extra;
        FUNCDESC step = function(7, INVOKE_FUNC, VT_BOOL);
        step.cParams = 2;
        step.cParamsOpt = 1;
        step.lprgelemdescParam = parameters;
        EXPECT_EQ(type->AddFuncDesc(0, &step), S_OK);
        LPOLESTR names[] = {text(OLESTR("Step")), text(OLESTR("Start")), text(OLESTR("By"))};
        EXPECT_EQ(type->SetFuncAndParamNames(0, names, 3), S_OK);
        EXPECT_EQ(type->SetFuncDocString(0, text(OLESTR("steps once"))), S_OK);
        // What was handed in may change now.
        number.vt = VT_R8;

        FUNCDESC get = function(DISPID_VALUE, INVOKE_PROPERTYGET, VT_I4);
        FUNCDESC put = function(DISPID_VALUE, INVOKE_PROPERTYPUT, VT_VOID);
        put.cParams = 1;
        put.lprgelemdescParam = parameters;
        EXPECT_EQ(type->AddFuncDesc(1, &get), S_OK);
        EXPECT_EQ(type->AddFuncDesc(2, &put), S_OK);
        LPOLESTR value[] = {text(OLESTR("Value")), text(OLESTR("x"))};
        EXPECT_EQ(type->SetFuncAndParamNames(1, value, 1), S_OK);
        EXPECT_EQ(type->SetFuncAndParamNames(2, value, 1), S_OK);
        EXPECT_EQ(type->SetFuncAndParamNames(2, value, 2), TYPE_E_ELEMENTNOTFOUND);
        EXPECT_EQ(type->LayOut(), S_OK);
        return type;
    }

    ComPtr<ICreateTypeLib2> library_;
};

TEST_F(TypeInfo, givesFunctionsBackAsDeepCopies) {
    const ComPtr<ITypeInfo> info = reading(createCounter());
    const TypeAttrHolder attr(info.get(), &ITypeInfo::GetTypeAttr);
    ASSERT_TRUE(attr);
    EXPECT_EQ(attr->cFuncs, 10);
    EXPECT_EQ(attr->cImplTypes, 1);
    EXPECT_EQ(attr->cbSizeVft, 56);
    const FuncDescHolder step(info.get(), &ITypeInfo::GetFuncDesc, 7u);
    ASSERT_TRUE(step);
    EXPECT_EQ(step->lprgelemdescParam[0].tdesc.lptdesc->vt, VT_I4);
    const PARAMDESC& by = step->lprgelemdescParam[1].paramdesc;
    ASSERT_NE(by.pparamdescex, nullptr);
    EXPECT_EQ(by.pparamdescex->cBytes, 32u);
    EXPECT_EQ(viewOf(by.pparamdescex->varDefaultValue.bstrVal), OLESTR("one"));
    const FuncDescHolder missing(info.get(), &ITypeInfo::GetFuncDesc, 10u);
    EXPECT_EQ(missing.result(), TYPE_E_ELEMENTNOTFOUND);
    expectDescriptionsOut(2);
}

TEST_F(TypeInfo, ofADispinterfaceBeginsWithTheMethodsThatEveryCallerSees) {
    const ComPtr<ITypeInfo> info = reading(createCounter());
    constexpr std::pair<MEMBERID, VARTYPE> expected[] = {
        {0x60000000, VT_VOID}, {0x60000001, VT_UI4},  {0x60000002, VT_UI4}, {0x60010000, VT_VOID},
        {0x60010001, VT_VOID}, {0x60010002, VT_VOID}, {0x60010003, VT_VOID}};
    for (UINT i = 0; i < std::size(expected); ++i) {
        const FuncDescHolder function(info.get(), &ITypeInfo::GetFuncDesc, i);
        ASSERT_TRUE(function);
        EXPECT_EQ(std::pair(function->memid, function->elemdescFunc.tdesc.vt), expected[i]);
        EXPECT_EQ(function->funckind, FUNC_DISPATCH);
        EXPECT_EQ(function->wFuncFlags, FUNCFLAG_FRESTRICTED);
    }
    // A type that the methods of the other library refer to is reached from here.
    const FuncDescHolder query(info.get(), &ITypeInfo::GetFuncDesc, 0u);
    EXPECT_EQ(sizeOf(info.get(), query->lprgelemdescParam[0]), sizeof(GUID));
}

TEST_F(TypeInfo, hasTheLocaleOfItsLibrary) {
    const ComPtr<ITypeInfo> info = reading(createCounter());
    const TypeAttrHolder attr(info.get(), &ITypeInfo::GetTypeAttr);
    ASSERT_TRUE(attr);
    EXPECT_EQ(attr->lcid, 0x409u);
}

TEST_F(TypeInfo, findsNamesInEitherDirectionAndInTheBase) {
    const ComPtr<ITypeInfo> info = reading(createCounter());
    BSTR names[4] = {};
    UINT count = 0;
    ASSERT_EQ(info->GetNames(7, names, 4, &count), S_OK);
    ASSERT_EQ(count, 3u);
    EXPECT_EQ(taken(names[0]) + taken(names[1]) + taken(names[2]), "StepStartBy");
    EXPECT_EQ(info->GetNames(99, names, 4, &count), TYPE_E_ELEMENTNOTFOUND);

    LPOLESTR wanted[] = {text(OLESTR("STEP")), text(OLESTR("by")), text(OLESTR("none"))};
    MEMBERID ids[3] = {};
    EXPECT_EQ(info->GetIDsOfNames(wanted, 2, ids), S_OK);
    EXPECT_EQ(ids[0], 7);
    EXPECT_EQ(ids[1], 1);
    EXPECT_EQ(info->GetIDsOfNames(wanted, 3, ids), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(ids[2], MEMBERID_NIL);
    LPOLESTR inherited[] = {text(OLESTR("AddRef"))};
    EXPECT_EQ(info->GetIDsOfNames(inherited, 1, ids), S_OK);
    EXPECT_EQ(ids[0], 0x60000001);

    BSTR name = nullptr, doc = nullptr, helpFile = nullptr;
    ASSERT_EQ(info->GetDocumentation(7, &name, &doc, nullptr, &helpFile), S_OK);
    EXPECT_EQ(taken(name) + "|" + taken(doc) + "|" + taken(helpFile), "Step|steps once|sample.hlp");
    ASSERT_EQ(info->GetDocumentation(MEMBERID_NIL, &name, &doc, nullptr, nullptr), S_OK);
    EXPECT_EQ(taken(name) + "|" + taken(doc), "ICounter|counts");
    ASSERT_EQ(info->GetDocumentation(DISPID_VALUE, nullptr, &doc, nullptr, nullptr), S_OK);
    EXPECT_EQ(taken(doc), "(null)");
}

TEST_F(TypeInfo, describesCoclassesWithTheirInterfaces) {
    const auto counter = createCounter();
    const auto coclass = create(OLESTR("Counter"), TKIND_COCLASS);
    EXPECT_EQ(coclass->AddImplType(0, refer(coclass, reading(counter).get())), S_OK);
    EXPECT_EQ(coclass->AddImplType(3, 1), TYPE_E_ELEMENTNOTFOUND);
    EXPECT_EQ(coclass->SetImplTypeFlags(0, IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE), S_OK);
    EXPECT_EQ(counter->SetImplTypeFlags(0, 1), TYPE_E_BADMODULEKIND);
    EXPECT_EQ(library_->SaveAllChanges(), S_OK);

    const ComPtr<ITypeInfo> info = reading(coclass);
    HREFTYPE reference = 0;
    ComPtr<ITypeInfo> source;
    INT flags = 0;
    ASSERT_EQ(info->GetRefTypeOfImplType(0, &reference), S_OK);
    ASSERT_EQ(info->GetRefTypeInfo(reference, source.put()), S_OK);
    EXPECT_EQ(source.get(), reading(counter).get());
    EXPECT_EQ(info->GetImplTypeFlags(0, &flags), S_OK);
    EXPECT_EQ(flags, 3);
    EXPECT_EQ(info->GetRefTypeOfImplType(1, &reference), TYPE_E_ELEMENTNOTFOUND);
    EXPECT_EQ(info->GetRefTypeInfo(99, source.put()), TYPE_E_ELEMENTNOTFOUND);
}

TEST_F(TypeInfo, readsTheLibraryByIndexGuidAndName) {
    const auto counter = createCounter();
    create(OLESTR("Colours"), TKIND_ENUM);
    const auto library = queryInterface<ITypeLib>(library_.get(), IID_ITypeLib);
    EXPECT_EQ(library->GetTypeInfoCount(), 2u);
    TYPEKIND kind{};
    EXPECT_EQ(library->GetTypeInfoType(1, &kind), S_OK);
    EXPECT_EQ(kind, TKIND_ENUM);
    EXPECT_EQ(library->GetTypeInfoType(2, &kind), TYPE_E_ELEMENTNOTFOUND);
    const LibAttrHolder attr(library.get(), &ITypeLib::GetLibAttr);
    ASSERT_TRUE(attr);
    EXPECT_EQ(attr->guid, libraryId);
    EXPECT_EQ(attr->wMajorVerNum * 10 + attr->wMinorVerNum, 21);
    ComPtr<ITypeInfo> found;
    EXPECT_EQ(library->GetTypeInfoOfGuid(dispatchId, found.put()), S_OK);
    EXPECT_EQ(found, reading(counter));
    EXPECT_EQ(library->GetTypeInfoOfGuid(libraryId, found.put()), TYPE_E_ELEMENTNOTFOUND);
    OLECHAR name[] = OLESTR("sTART");
    BOOL known = FALSE;
    EXPECT_EQ(library->IsName(name, 0, &known), S_OK);
    EXPECT_TRUE(known);
    EXPECT_EQ(OleView(name), OLESTR("Start"));
    MEMBERID memid = 0;
    USHORT count = 1;
    EXPECT_EQ(library->FindName(text(OLESTR("step")), 0, found.put(), &memid, &count), S_OK);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(memid, 7);
    BSTR libraryName = nullptr;
    EXPECT_EQ(library->GetDocumentation(-1, &libraryName, nullptr, nullptr, nullptr), S_OK);
    EXPECT_EQ(taken(libraryName), "Sample");
    EXPECT_EQ(library->GetDocumentation(2, nullptr, nullptr, nullptr, nullptr),
              TYPE_E_ELEMENTNOTFOUND);
}

TEST_F(TypeInfo, keepsConstantsAndLaysRecordsOut) {
    const auto colours = create(OLESTR("Colours"), TKIND_ENUM);
    VARIANT value{};
    value.vt = VT_I4;
    value.lVal = 255;
    VARDESC constant{};
    constant.memid = MEMBERID_NIL;
    constant.varkind = VAR_CONST;
    constant.lpvarValue = &value;
    constant.elemdescVar.tdesc.vt = VT_INT;
    EXPECT_EQ(colours->AddVarDesc(0, &constant), S_OK);
    EXPECT_EQ(colours->SetVarName(0, text(OLESTR("red"))), S_OK);
    EXPECT_EQ(colours->AddVarDesc(2, &constant), TYPE_E_ELEMENTNOTFOUND);
    constant.lpvarValue = nullptr;
    EXPECT_EQ(colours->AddVarDesc(1, &constant), E_INVALIDARG);
    EXPECT_EQ(colours->LayOut(), S_OK);
    value.lVal = 0;
    const ComPtr<ITypeInfo> info = reading(colours);
    const VarDescHolder red(info.get(), &ITypeInfo::GetVarDesc, 0u);
    ASSERT_TRUE(red);
    EXPECT_EQ(red->memid, 0x40000000);
    EXPECT_EQ(red->lpvarValue->lVal, 255);

    const auto record = create(OLESTR("Point"), TKIND_RECORD);
    VARDESC field{};
    field.varkind = VAR_PERINSTANCE;
    for (const VARTYPE vt : {VARTYPE{VT_UI1}, VARTYPE{VT_R8}, VARTYPE{VT_I2}}) {
        field.elemdescVar.tdesc.vt = vt;
        EXPECT_EQ(record->AddVarDesc(0, &field), S_OK); // each in front of those before it
    }
    EXPECT_EQ(record->LayOut(), S_OK);
    const ComPtr<ITypeInfo> point = reading(record);
    const TypeAttrHolder attr(point.get(), &ITypeInfo::GetTypeAttr);
    const VarDescHolder last(point.get(), &ITypeInfo::GetVarDesc, 2u);
    ASSERT_TRUE(attr && last);
    EXPECT_EQ(attr->cbSizeInstance, 24u);
    EXPECT_EQ(last->oInst, 16u);
}

TEST_F(TypeInfo, refusesWhatDoesNotBelongToAType) {
    const auto type = createCounter();
    ComPtr<ICreateTypeInfo> other;
    EXPECT_EQ(library_->CreateTypeInfo(text(OLESTR("icounter")), TKIND_ENUM, other.put()),
              TYPE_E_NAMECONFLICT);
    EXPECT_EQ(library_->CreateTypeInfo(nullptr, TKIND_ENUM, other.put()), E_INVALIDARG);
    EXPECT_EQ(create(OLESTR("Twin"), TKIND_DISPATCH)->SetGuid(dispatchId), TYPE_E_DUPLICATEID);
    FUNCDESC one = function(1, INVOKE_FUNC, VT_EMPTY);
    EXPECT_EQ(type->AddFuncDesc(4, &one), TYPE_E_ELEMENTNOTFOUND);
    one.cParams = 1;
    EXPECT_EQ(type->AddFuncDesc(0, &one), E_INVALIDARG);
    ELEMDESC pointer{};
    pointer.tdesc.vt = VT_PTR;
    one.lprgelemdescParam = &pointer;
    EXPECT_EQ(type->AddFuncDesc(0, &one), E_INVALIDARG);
    one.funckind = FUNC_PUREVIRTUAL;
    one.cParams = 0;
    EXPECT_EQ(type->AddFuncDesc(0, &one), TYPE_E_BADMODULEKIND);
    LPOLESTR taken[] = {text(OLESTR("value"))};
    EXPECT_EQ(type->SetFuncAndParamNames(0, taken, 1), TYPE_E_AMBIGUOUSNAME);
    EXPECT_EQ(type->SetTypeDescAlias(&pointer.tdesc), TYPE_E_BADMODULEKIND);
    EXPECT_EQ(create(OLESTR("Alias"), TKIND_ALIAS)->SetTypeDescAlias(&pointer.tdesc), E_INVALIDARG);
    const auto loop = create(OLESTR("Loop"), TKIND_INTERFACE);
    EXPECT_EQ(loop->AddImplType(0, refer(loop, reading(loop).get())), TYPE_E_CIRCULARTYPE);
}

TEST_F(TypeInfo, placesMethodsBehindThoseOfTheBaseInStdole) {
    ComPtr<ITypeLib> none;
    EXPECT_EQ(LoadRegTypeLib(libraryId, 2, 0, 0, none.put()), TYPE_E_LIBNOTREGISTERED);
    const auto dispatch = dispatchInfo();
    const auto derived = create(OLESTR("IDerived"), TKIND_INTERFACE);
    EXPECT_EQ(derived->AddImplType(0, refer(derived, dispatch.get())), S_OK);
    FUNCDESC added = function(MEMBERID_NIL, INVOKE_FUNC, VT_EMPTY);
    added.funckind = FUNC_PUREVIRTUAL;
    EXPECT_EQ(derived->AddFuncDesc(0, &added), S_OK);
    EXPECT_EQ(derived->LayOut(), S_OK);
    const ComPtr<ITypeInfo> info = reading(derived);
    const FuncDescHolder method(info.get(), &ITypeInfo::GetFuncDesc, 0u);
    EXPECT_EQ(method->oVft, 56);
    EXPECT_EQ(method->memid, 0x60020000);

    const FuncDescHolder invoke(dispatch.get(), &ITypeInfo::GetFuncDesc, 3u);
    ASSERT_TRUE(invoke);
    EXPECT_EQ(invoke->memid, 0x60010003);
    EXPECT_EQ(sizeOf(dispatch.get(), invoke->lprgelemdescParam[1]), sizeof(GUID));
}

TEST_F(TypeInfo, keepsTheLibraryAliveThroughATypeAlone) {
    ComPtr<ICreateTypeLib2> library;
    ASSERT_EQ(CreateTypeLib2(SYS_WIN64, OLESTR("other"), library.put()), S_OK);
    ComPtr<ICreateTypeInfo> type;
    ASSERT_EQ(library->CreateTypeInfo(text(OLESTR("Alone")), TKIND_ENUM, type.put()), S_OK);
    library.reset();
    ComPtr<ITypeLib> containing;
    UINT index = 9;
    ASSERT_EQ(reading(type)->GetContainingTypeLib(containing.put(), &index), S_OK);
    type.reset();
    EXPECT_EQ(index, 0u);
    EXPECT_EQ(containing->GetTypeInfoCount(), 1u);
}

} // namespace
} // namespace platform
