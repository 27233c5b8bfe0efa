// Events of every sort, each fired by a method that a script can call.
#pragma once

#include "servers/sample/identities.h"
#include "servers/sample/values.h"

namespace sample {

// The part of the sample server that fires events.
class Events : public Values {
  public:
    using Values::Values;

    // How many clients are connected.
    LONG connections() { return static_cast<LONG>(events().connections()); }

    void fireDone();
    void fireTick(LONG count);
    // Tick again and again, counted from 1.
    void fireMany(LONG count);
    // One event with a parameter of every type.
    void fireEverything();
    // An event with references; gives whether any client has changed what they refer to.
    bool fireAsked();
    void fireChildAdded(platform::OleView name);
    // An event with an array of 1, 2, 3 and so on.
    void fireMeasured(LONG count);

    // Renamed as few servers send it: with named arguments, with one instead of two, with three.
    void fireNamed(platform::OleView oldName, platform::OleView newName);
    void fireTooFew();
    void fireTooMany();
    // Done under the name of the source interface, where clients expect none. Gives what the last
    // client answered.
    LONG fireUnderWrongInterface();

    // Declares the methods, and the source interface with its events.
    template <class Class>
    static void declare(kit::ClassBuilder<Class>& builder);
    template <class Class>
    static void declareSource(kit::ClassBuilder<Class>& builder);
};

template <class Class>
void Events::declare(kit::ClassBuilder<Class>& builder) {
    builder.property("Connections", &Events::connections)
        .method("FireTick", &Events::fireTick, {"count"})
        .method("FireDone", &Events::fireDone)
        .method("FireMany", &Events::fireMany, {"count"})
        .method("FireEverything", &Events::fireEverything)
        .method("FireAsked", &Events::fireAsked)
        .method("FireChildAdded", &Events::fireChildAdded, {"name"})
        .method("FireMeasured", &Events::fireMeasured, {"count"})
        .method("FireNamed", &Events::fireNamed, {"oldName", "newName"})
        .method("FireTooFew", &Events::fireTooFew)
        .method("FireTooMany", &Events::fireTooMany)
        .method("FireUnderWrongInterface", &Events::fireUnderWrongInterface);
}

template <class Class>
void Events::declareSource(kit::ClassBuilder<Class>& builder) {
    constexpr WORD both = PARAMFLAG_FIN | PARAMFLAG_FOUT;
    kit::TypeSpec color(VT_USERDEFINED);
    color.cppType = &kit::enumerationKey<Color>;
    builder.source("ISampleEvents", eventsInterface)
        .event("Tick", {{"Count", VT_I4}})
        .event("Renamed", {{"OldName", VT_BSTR}, {"NewName", VT_BSTR}})
        .event("Done")
        .event("Everything",
               {{"Int8", VT_I1},         {"UInt8", VT_UI1},       {"Int16", VT_I2},
                {"UInt16", VT_UI2},      {"Int32", VT_I4},        {"UInt32", VT_UI4},
                {"Int64", VT_I8},        {"UInt64", VT_UI8},      {"Int", VT_INT},
                {"UInt", VT_UINT},       {"Single", VT_R4},       {"Double", VT_R8},
                {"Currency", VT_CY},     {"Decimal", VT_DECIMAL}, {"Date", VT_DATE},
                {"Text", VT_BSTR},       {"Flag", VT_BOOL},       {"Error", VT_ERROR},
                {"Result", VT_HRESULT},  {"Any", VT_VARIANT},     {"Object", VT_DISPATCH},
                {"Unknown", VT_UNKNOWN}, {"Color", color}})
        .event("Asked", {{"Count", kit::pointerTo(VT_I4), both},
                         {"Text", kit::pointerTo(VT_BSTR), both},
                         {"Cancel", kit::pointerTo(VT_BOOL), both}})
        .event("ChildAdded", {{"Child", VT_DISPATCH}})
        .event("Measured", {{"Values", kit::safeArrayOf(VT_R8)}});
}

} // namespace sample
