// Declares a class of dispatch objects with one line a member.
//
//     static const ClassDefinition& definition() {
//         static const auto made = ClassBuilder<Widget>("Widget", clsid, iid)
//             .method("Add", &Widget::add, {"a", "b"})
//             .property("Name", &Widget::name, &Widget::setName)
//             .build();
//         return *made;
//     }
//
// Types come from the C++ signatures (values.h, parameters.h). A result is declared as an
// [out, retval] parameter. DISPIDs count from 1 in the order of declaration, those of events by
// themselves. What modifies a member (hidden(), dispid(), ...) follows it.
#pragma once

#include "servers/kit/definition_draft.h"

namespace kit {

template <class Class>
class ClassBuilder {
    using Names = std::vector<std::string>;

  public:
    // The main interface is named "I" and the class's name unless a name is given.
    ClassBuilder(const std::string& name, const CLSID& clsid, const IID& iid,
                 const std::string& interfaceName = {})
        : draft_(name, clsid, interfaceName.empty() ? "I" + name : interfaceName, iid) {}

    // An interface to inherit from or to list, without a class.
    static ClassBuilder interface_(const std::string& name, const IID& iid) {
        return ClassBuilder(name, CLSID{}, iid, name);
    }

    template <class Function>
    ClassBuilder& method(const std::string& name, Function function, const Names& params = {}) {
        draft_.beginGroup();
        addFunction(name, INVOKE_FUNC, function, params);
        return *this;
    }

    // A read-only property; with parameters, one that takes an index.
    template <class Getter>
    ClassBuilder& property(const std::string& name, Getter getter, const Names& params = {}) {
        draft_.beginGroup();
        addFunction(name, INVOKE_PROPERTYGET, getter, params);
        return *this;
    }

    template <class Getter, class Setter>
    requires std::is_member_function_pointer_v<Setter> ClassBuilder&
    property(const std::string& name, Getter getter, Setter setter, const Names& params = {}) {
        draft_.beginGroup();
        addFunction(name, INVOKE_PROPERTYGET, getter, params);
        addFunction(name, INVOKE_PROPERTYPUT, setter, params);
        return *this;
    }

    // A put half, alone or for a property declared before.
    template <class Setter>
    ClassBuilder& put(const std::string& name, Setter setter, const Names& params = {}) {
        draft_.beginGroup();
        addFunction(name, INVOKE_PROPERTYPUT, setter, params);
        return *this;
    }
    template <class Setter>
    ClassBuilder& putRef(const std::string& name, Setter setter, const Names& params = {}) {
        draft_.beginGroup();
        addFunction(name, INVOKE_PROPERTYPUTREF, setter, params);
        return *this;
    }

    // A data member as a variable of the dispinterface; readOnly() may follow.
    template <class T>
    ClassBuilder& variable(const std::string& name, T Class::*member) {
        draft_.beginGroup();
        FunctionSpec spec{.name = name, .result = ValueTraits<T>::type()};
        draft_.add({std::move(spec), MemberDraft::Role::Variable,
                    std::make_shared<VariableHandler<Class, T>>(member)});
        return *this;
    }

    // A function declared in every detail, with a handler that sees the call as it came.
    ClassBuilder& raw(FunctionSpec spec, typename RawHandler<Class>::Function handler) {
        draft_.beginGroup();
        draft_.add({std::move(spec), MemberDraft::Role::Function,
                    std::make_shared<RawHandler<Class>>(std::move(handler))});
        return *this;
    }

    // The default source interface, and its events.
    ClassBuilder& source(const std::string& name, const IID& iid) {
        draft_.openSource(name, iid);
        return *this;
    }
    ClassBuilder& event(const std::string& name, std::vector<ParamSpec> params = {}) {
        draft_.beginGroup();
        draft_.add(
            {FunctionSpec{.name = name, .params = std::move(params)}, MemberDraft::Role::Event});
        return *this;
    }

    // Types of the library.
    template <class Enum>
    ClassBuilder& enumeration(const std::string& name, std::vector<ConstantSpec> constants) {
        draft_.addType(
            {.name = name, .cppType = &enumerationKey<Enum>, .constants = std::move(constants)});
        return *this;
    }
    ClassBuilder& type(UserTypeSpec spec) {
        draft_.addType(std::move(spec));
        return *this;
    }

    // The base of the main interface; its members belong to the class. Comes before them.
    ClassBuilder& inherits(const ClassBuilder& base) {
        draft_.inherit(base.draft_);
        return *this;
    }
    // A further interface that the coclass lists.
    ClassBuilder& implements(const ClassBuilder& other) {
        draft_.implement(other.draft_);
        return *this;
    }
    // An interface of TKIND_INTERFACE instead of a dispinterface; it can't have variables.
    ClassBuilder& interfaceKind(TYPEKIND kind) {
        draft_.mainInterface().kind = kind;
        return *this;
    }
    // GetTypeInfoCount answers 0.
    ClassBuilder& withoutTypeInfo() {
        draft_.dropTypeInfo();
        return *this;
    }

    // Modifiers of the member above.
    ClassBuilder& dispid(DISPID dispid) {
        return change([=](MemberDraft& member) { member.spec.dispid = dispid; });
    }
    ClassBuilder& hidden() { return flags(FUNCFLAG_FHIDDEN); }
    ClassBuilder& restricted() {
        return change([](MemberDraft& member) {
            const bool variable = member.role == MemberDraft::Role::Variable;
            member.spec.flags = static_cast<WORD>(
                member.spec.flags | (variable ? +VARFLAG_FRESTRICTED : +FUNCFLAG_FRESTRICTED));
        });
    }
    ClassBuilder& readOnly() { return flags(VARFLAG_FREADONLY); }
    ClassBuilder& flags(int bits) {
        return change([=](MemberDraft& member) {
            member.spec.flags = static_cast<WORD>(member.spec.flags | bits);
        });
    }
    // Declares another type than the C++ one: of the value, of a parameter.
    ClassBuilder& declare(const TypeSpec& type) {
        return change([&](MemberDraft& member) { declareValue(member, type); });
    }
    ClassBuilder& declareParameter(std::size_t index, const TypeSpec& type) {
        return change([&](MemberDraft& member) { member.spec.params.at(index).type = type; });
    }
    // GetIDsOfNames doesn't know the member.
    ClassBuilder& unknownByName() {
        return change([](MemberDraft& member) { member.known = false; });
    }

    // The finished class, part of `library` (which must then list it) or with one of its own.
    std::unique_ptr<const ClassDefinition> build(const Library* library = nullptr) {
        return draft_.finish(library);
    }

  private:
    ClassBuilder& change(const std::function<void(MemberDraft&)>& change) {
        draft_.change(change);
        return *this;
    }

    template <class Function>
    void addFunction(const std::string& name, INVOKEKIND kind, Function function,
                     const Names& params) {
        using Call = SignatureOf<Function>;
        FunctionSpec spec{.name = name, .kind = kind, .params = Call::params()};
        for (std::size_t i = 0; i < spec.params.size() && i < params.size(); ++i)
            spec.params[i].name = params[i];
        if constexpr (!std::is_void_v<typename Call::Result>) {
            spec.result = VT_HRESULT;
            spec.params.push_back({"result", pointerTo(ValueTraits<typename Call::Result>::type()),
                                   PARAMFLAG_FOUT | PARAMFLAG_FRETVAL});
        }
        draft_.add({std::move(spec), MemberDraft::Role::Function,
                    std::make_shared<FunctionHandler<Class, Function>>(function)});
    }

    DefinitionDraft draft_;
};

} // namespace kit
