// Firing.
#include "servers/sample/events.h"

#include "servers/sample/identities.h"

#include <array>

namespace sample {

namespace {

template <class T>
VARIANT referenceTo(VARTYPE vt, T& value) {
    VARIANT v{};
    v.vt = static_cast<VARTYPE>(VT_BYREF | vt);
    v.byref = &value;
    return v;
}

// 42 in each of the types.
DECIMAL decimalNumber() {
    DECIMAL value{};
    value.Lo64 = 42;
    return value;
}

CY currencyNumber() {
    CY value{};
    value.int64 = 420000;
    return value;
}

} // namespace

void Events::fireDone() { fire(doneEvent); }
void Events::fireTick(LONG count) { fire(tickEvent, count); }

void Events::fireMany(LONG count) {
    for (LONG i = 1; i <= count; ++i)
        fireTick(i);
}

void Events::fireEverything() {
    const auto object = kit::createDispatch<Child>(OLESTR("sent"));
    fire(everythingEvent, static_cast<signed char>(42), BYTE{42}, SHORT{42}, USHORT{42}, LONG{42},
         ULONG{42}, LONGLONG{42}, ULONGLONG{42}, kit::Int{42}, kit::UInt{42}, 42.0f, 42.0,
         currencyNumber(), decimalNumber(), kit::Date{42}, platform::OleString(OLESTR("text")),
         true, kit::ErrorCode{E_FAIL}, kit::HResult{E_FAIL}, kit::toVariant(42.5), object,
         platform::ComPtr<IUnknown>::borrow(object.get()), Color::Green);
}

bool Events::fireAsked() {
    LONG count = 42;
    const auto text = platform::makeBstr(OLESTR("question"));
    BSTR given = text.get();
    VARIANT_BOOL cancel = VARIANT_FALSE;
    std::array arguments{referenceTo(VT_BOOL, cancel), referenceTo(VT_BSTR, given),
                         referenceTo(VT_I4, count)};
    DISPPARAMS params{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
    fireRaw(askedEvent, params);
    return count != 42 || given != text.get() || cancel != VARIANT_FALSE;
}

void Events::fireChildAdded(platform::OleView name) {
    fire(childAddedEvent, kit::createDispatch<Child>(platform::OleString(name)));
}

void Events::fireMeasured(LONG count) {
    std::vector<double> values;
    for (LONG i = 1; i <= count; ++i)
        values.push_back(i);
    fire(measuredEvent, std::move(values));
}

void Events::fireNamed(platform::OleView oldName, platform::OleView newName) {
    const auto from = kit::toVariant(platform::OleString(oldName));
    const auto to = kit::toVariant(platform::OleString(newName));
    std::array arguments{from.get(), to.get()};
    std::array<DISPID, 2> names{0, 1};
    DISPPARAMS params{arguments.data(), names.data(), 2, 2};
    fireRaw(renamedEvent, params);
}

void Events::fireTooFew() { fire(renamedEvent, platform::OleString(OLESTR("only"))); }

void Events::fireTooMany() {
    fire(renamedEvent, platform::OleString(OLESTR("first")), platform::OleString(OLESTR("second")),
         platform::OleString(OLESTR("third")));
}

LONG Events::fireUnderWrongInterface() {
    DISPPARAMS params{};
    return fireRaw(doneEvent, params, eventsInterface);
}

} // namespace sample
