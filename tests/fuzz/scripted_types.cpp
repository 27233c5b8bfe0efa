// The answers of scripted types and libraries.
#include "fuzz/scripted_types.h"

#include "fuzz/scripted_server.h"

#include <deque>
#include <memory>

namespace fuzz {
namespace {

using axlink2::test::Silent;

// What a type description hands out: all its parts live and end together.
template <class Description>
struct Handed : Description {
    std::deque<TYPEDESC> types;
    std::vector<ELEMDESC> parameters;
    VARIANT constant{};
    ~Handed() { VariantClear(&constant); }
};

constexpr std::array<VARTYPE, 40> typeKinds = {
    VT_I2,          VT_I4,          VT_R4,        VT_R8,        VT_CY,      VT_DATE,
    VT_BSTR,        VT_DISPATCH,    VT_ERROR,     VT_BOOL,      VT_VARIANT, VT_UNKNOWN,
    VT_DECIMAL,     VT_I1,          VT_UI1,       VT_UI2,       VT_UI4,     VT_I8,
    VT_UI8,         VT_INT,         VT_UINT,      VT_VOID,      VT_HRESULT, VT_PTR,
    VT_PTR,         VT_PTR,         VT_SAFEARRAY, VT_SAFEARRAY, VT_CARRAY,  VT_USERDEFINED,
    VT_USERDEFINED, VT_USERDEFINED, VT_LPSTR,     VT_LPWSTR,    VT_RECORD,  VT_INT_PTR,
    VT_UINT_PTR,    VT_FILETIME,    VT_CLSID,     VT_EMPTY};

template <class Description>
TYPEDESC drawType(ByteSource& source, Handed<Description>& owner) {
    TYPEDESC type{};
    type.vt = source.oneIn(16) ? source.number<VARTYPE>() : source.pick(typeKinds);
    if (type.vt == VT_USERDEFINED) {
        type.hreftype = source.upTo(3);
    } else if (type.vt == VT_PTR || type.vt == VT_SAFEARRAY) {
        if (source.oneIn(8)) return type;              // to nothing
        if (!owner.types.empty() && source.oneIn(8)) { // perhaps to itself
            type.lptdesc = &owner.types[source.byte() % owner.types.size()];
            return type;
        }
        if (source.isEmpty()) return type;
        TYPEDESC& behind = owner.types.emplace_back();
        behind = drawType(source, owner);
        type.lptdesc = &behind;
    }
    return type;
}

template <class Description>
ELEMDESC drawElement(ByteSource& source, Handed<Description>& owner) {
    ELEMDESC element{};
    element.tdesc = drawType(source, owner);
    element.paramdesc.wParamFlags =
        source.oneIn(8)
            ? source.number<USHORT>()
            : source.pick(std::array<USHORT, 6>{
                  PARAMFLAG_FIN, PARAMFLAG_FOUT, PARAMFLAG_FIN | PARAMFLAG_FOUT,
                  PARAMFLAG_FOUT | PARAMFLAG_FRETVAL, PARAMFLAG_FIN | PARAMFLAG_FOPT, 0});
    return element;
}

DISPID drawMember(ByteSource& source) {
    return source.oneIn(8) ? source.number<DISPID>() : static_cast<DISPID>(source.upTo(7));
}

// Hidden and restricted members are rare, or few were left.
WORD drawFlags(ByteSource& source) { return source.oneIn(8) ? source.number<WORD>() : WORD{0}; }

template <class Interface>
class ScriptedTypeObject : public Scripted<Silent<Interface>> {
  public:
    ScriptedTypeObject(const char* name, ScriptedTypes& types)
        : Scripted<Silent<Interface>>(name, types.script()), types_(types) {}

  protected:
    ByteSource& source() { return types_.source(); }
    // Whether this call shall fail.
    bool fails() { return source().isEmpty() || source().oneIn(16); }

    // Gives a description that `draw` fills.
    template <class Description, class Draw>
    HRESULT hand(Description** out, Draw draw) {
        *out = reinterpret_cast<Description*>(0x10);
        if (fails()) return E_FAIL;
        if (source().oneIn(32)) {
            *out = nullptr;
            return S_OK;
        }
        auto handed = std::make_unique<Handed<Description>>();
        draw(*handed);
        ++types_.outstanding;
        *out = handed.release();
        return S_OK;
    }
    template <class Description>
    void takeBack(Description* description) {
        --types_.outstanding;
        delete static_cast<Handed<Description>*>(description);
    }
    HRESULT document(BSTR* name, BSTR* text, DWORD* context, BSTR* file) {
        if (name) *name = reinterpret_cast<BSTR>(0x10);
        if (fails()) return E_FAIL;
        if (name) *name = drawName(source());
        if (text) *text = source().oneIn(2) ? drawName(source()) : nullptr;
        if (context) *context = 0;
        if (file) *file = nullptr;
        return S_OK;
    }

    ScriptedTypes& types_;
};

class ScriptedType final : public ScriptedTypeObject<ITypeInfo> {
  public:
    explicit ScriptedType(ScriptedTypes& types) : ScriptedTypeObject("ScriptedType", types) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        return offer(iid == IID_IUnknown || iid == IID_ITypeInfo, this, out);
    }

    HRESULT STDMETHODCALLTYPE GetTypeAttr(TYPEATTR** out) override {
        return hand(out, [this](Handed<TYPEATTR>& attributes) {
            attributes.typekind = static_cast<TYPEKIND>(source().upTo(8));
            attributes.cFuncs = drawCount();
            attributes.cVars = drawCount();
            attributes.cImplTypes = drawCount();
            attributes.guid = drawGuid(source());
            attributes.tdescAlias = drawType(source(), attributes);
        });
    }
    HRESULT STDMETHODCALLTYPE GetFuncDesc(UINT, FUNCDESC** out) override {
        return hand(out, [this](Handed<FUNCDESC>& function) {
            function.memid = drawMember(source());
            function.invkind = source().pick(std::array<INVOKEKIND, 6>{
                INVOKE_FUNC, INVOKE_FUNC, INVOKE_PROPERTYGET, INVOKE_PROPERTYPUT,
                INVOKE_PROPERTYPUTREF, static_cast<INVOKEKIND>(0)});
            function.wFuncFlags = drawFlags(source());
            function.elemdescFunc = drawElement(source(), function);
            for (unsigned left = source().upTo(8); left > 0; --left)
                function.parameters.push_back(drawElement(source(), function));
            function.lprgelemdescParam = function.parameters.data();
            function.cParams = static_cast<SHORT>(function.parameters.size());
            function.cParamsOpt = source().pick(std::array<SHORT, 6>{0, 0, 1, 3, -1, 0x7FFF});
            if (!source().oneIn(16)) return;
            // A number that lies, of parameters that aren't there.
            function.cParams = source().number<SHORT>();
            if (function.cParams > 0) function.lprgelemdescParam = nullptr;
        });
    }
    HRESULT STDMETHODCALLTYPE GetVarDesc(UINT, VARDESC** out) override {
        return hand(out, [this](Handed<VARDESC>& variable) {
            variable.memid = drawMember(source());
            variable.varkind = source().pick(
                std::array<VARKIND, 4>{VAR_DISPATCH, VAR_CONST, VAR_CONST, VAR_STATIC});
            variable.wVarFlags = drawFlags(source());
            variable.elemdescVar = drawElement(source(), variable);
            types_.script().values.fill(variable.constant);
            const bool isConstant = variable.varkind == VAR_CONST && !source().oneIn(8);
            variable.lpvarValue = isConstant ? &variable.constant : nullptr;
        });
    }
    HRESULT STDMETHODCALLTYPE GetNames(MEMBERID, BSTR* names, UINT most, UINT* count) override {
        if (fails()) return E_FAIL;
        const UINT given = std::min<UINT>(most, source().upTo(9));
        for (UINT i = 0; i < given; ++i)
            names[i] = drawName(source());
        *count = source().oneIn(8) ? source().number<UINT>() : given;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetRefTypeOfImplType(UINT, HREFTYPE* out) override {
        *out = source().upTo(3);
        return fails() ? E_FAIL : S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetImplTypeFlags(UINT, INT* out) override {
        *out = static_cast<INT>(source().upTo(7));
        return fails() ? E_FAIL : S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetDocumentation(MEMBERID, BSTR* name, BSTR* text, DWORD* context,
                                               BSTR* file) override {
        return document(name, text, context, file);
    }
    HRESULT STDMETHODCALLTYPE GetRefTypeInfo(HREFTYPE, ITypeInfo** out) override {
        return types_.giveType(out);
    }
    HRESULT STDMETHODCALLTYPE GetContainingTypeLib(ITypeLib** out, UINT* index) override {
        if (index) *index = 0;
        return types_.giveLibrary(out);
    }
    void STDMETHODCALLTYPE ReleaseTypeAttr(TYPEATTR* attributes) override { takeBack(attributes); }
    void STDMETHODCALLTYPE ReleaseFuncDesc(FUNCDESC* function) override { takeBack(function); }
    void STDMETHODCALLTYPE ReleaseVarDesc(VARDESC* variable) override { takeBack(variable); }

  private:
    WORD drawCount() {
        return source().oneIn(64) ? WORD{0xFFFF} : static_cast<WORD>(source().upTo(6));
    }
};

class ScriptedLibrary final : public ScriptedTypeObject<ITypeLib> {
  public:
    explicit ScriptedLibrary(ScriptedTypes& types) : ScriptedTypeObject("ScriptedLibrary", types) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        return offer(iid == IID_IUnknown || iid == IID_ITypeLib, this, out);
    }
    UINT STDMETHODCALLTYPE GetTypeInfoCount() override {
        return source().oneIn(64) ? 0xFFFFFFFF : source().upTo(4);
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, ITypeInfo** out) override {
        return types_.giveType(out);
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoOfGuid(REFGUID, ITypeInfo** out) override {
        return types_.giveType(out);
    }
    HRESULT STDMETHODCALLTYPE GetDocumentation(INT, BSTR* name, BSTR* text, DWORD* context,
                                               BSTR* file) override {
        return document(name, text, context, file);
    }
};

} // namespace

template <class Made, class Interface>
HRESULT ScriptedTypes::give(Interface** out) {
    *out = reinterpret_cast<Interface*>(0x10);
    if (source_.isEmpty() || source_.oneIn(16)) return E_FAIL;
    *out = source_.oneIn(32) ? nullptr : new Made(*this);
    return S_OK;
}

HRESULT ScriptedTypes::giveType(ITypeInfo** out) { return give<ScriptedType>(out); }
HRESULT ScriptedTypes::giveLibrary(ITypeLib** out) { return give<ScriptedLibrary>(out); }

GUID drawGuid(ByteSource& source) {
    GUID guid{};
    guid.Data1 = source.upTo(5);
    if (guid.Data1 > 0) guid.Data2 = 0xF022;
    return guid;
}

BSTR drawName(ByteSource& source) {
    constexpr std::array<const OLECHAR*, 12> names = {
        OLESTR("Alpha"),  OLESTR("Beta"),    OLESTR("Gamma"),     OLESTR("Kind"),
        OLESTR("get"),    OLESTR("release"), OLESTR("IDispatch"), OLESTR("IUnknown"),
        OLESTR("double"), OLESTR("_hidden"), OLESTR(""),          OLESTR("Alpha")};
    switch (source.upTo(7)) {
    case 0:
        return nullptr;
    case 1: {
        const platform::OleString text = platform::toOle(source.wideText(3));
        return SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    }
    default:
        return SysAllocString(source.pick(names));
    }
}

} // namespace fuzz
