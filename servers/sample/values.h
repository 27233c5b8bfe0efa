// Values of every shape: arrays of every element type, whatever a VARIANT can hold, objects in
// them.
#pragma once

#include "servers/sample/echoes.h"
#include "servers/sample/items.h"

namespace sample {

// The part of the sample server that shows how values cross.
class Values : public Echoes {
  public:
    explicit Values(const kit::ClassDefinition& definition) : Echoes(definition) {}

    // What arrived, such as "VT_ARRAY|VT_R8 2x3".
    platform::OleString describe(VARIANT value);
    // 42 in a VARIANT of the kind of that name, such as "date". Raises DISP_E_BADVARTYPE.
    platform::ScopedVariant makeValue(platform::OleView kind);

    // 1, 2, 3 and so on in columns, with two elements for each of `dimensions`, and from `lower`
    // up.
    kit::Array<double> makeMatrix(LONG rows, LONG columns);
    kit::Array<double> makeGrid(LONG dimensions);
    kit::Array<platform::ScopedVariant> makeCells(LONG dimensions);
    kit::Array<LONG> makeShifted(LONG count, LONG lower);
    // Puts a longer array in the place of the caller's, and one where there was none.
    void append(kit::InOut<kit::Array<double>> values, double value);
    void squares(LONG count, kit::Out<kit::Array<double>> values);
    kit::Array<double> weights() { return copyOf(weights_); }
    void setWeights(kit::Array<double> weights) { weights_ = std::move(weights); }

    // Objects, one by one and inside of something.
    platform::ComPtr<IDispatch> items();
    platform::ComPtr<IDispatch> newBare() { return kit::createDispatch<Bare>(); }
    platform::ComPtr<IUnknown> unknownItem();
    platform::ScopedVariant anyItem(LONG index) { return kit::toVariant(collection().item(index)); }
    std::vector<platform::ComPtr<IDispatch>> allItems() { return collection().children(); }
    std::vector<platform::ScopedVariant> mixed();

    // Declares all of it, and EchoArray... of every element type.
    template <class Class>
    static void declare(kit::ClassBuilder<Class>& builder);

  private:
    template <class T>
    static kit::Array<T> copyOf(const kit::Array<T>& array) {
        return {platform::ScopedSafeArray::borrow(array.array.get())};
    }
    Items& collection();

    platform::ComPtr<Items> items_;
    kit::Array<double> weights_;
};

template <class Class>
void Values::declare(kit::ClassBuilder<Class>& builder) {
    builder.method("Echo", &Values::echo<platform::ScopedVariant>, {"value"})
        .method("Describe", &Values::describe, {"value"})
        .method("MakeValue", &Values::makeValue, {"kind"})
        .method("MakeMatrix", &Values::makeMatrix, {"rows", "columns"})
        .method("MakeGrid", &Values::makeGrid, {"dimensions"})
        .method("MakeCells", &Values::makeCells, {"dimensions"})
        .method("MakeShifted", &Values::makeShifted, {"count", "lower"})
        .method("Append", &Values::append, {"values", "value"})
        .method("Squares", &Values::squares, {"count", "values"})
        .property("Weights", &Values::weights, &Values::setWeights)
        .property("Items", &Values::items)
        .property("UnknownItem", &Values::unknownItem)
        .method("NewBare", &Values::newBare)
        .method("AnyItem", &Values::anyItem, {"index"})
        .method("AllItems", &Values::allItems)
        .method("Mixed", &Values::mixed);
    auto array = [&]<class T>(const std::string& name, std::type_identity<T>) {
        builder.method("EchoArray" + name, &Values::echo<kit::Array<T>>, {"values"});
    };
    // Dates and decimals are text as well; the first of a kind says what cells become.
    array("BSTR", std::type_identity<platform::OleString>());
    array("I1", std::type_identity<signed char>());
    array("UI1", std::type_identity<BYTE>());
    array("I2", std::type_identity<SHORT>());
    array("UI2", std::type_identity<USHORT>());
    array("I4", std::type_identity<LONG>());
    array("UI4", std::type_identity<ULONG>());
    array("I8", std::type_identity<LONGLONG>());
    array("UI8", std::type_identity<ULONGLONG>());
    array("R4", std::type_identity<float>());
    array("R8", std::type_identity<double>());
    array("Currency", std::type_identity<CY>());
    array("Date", std::type_identity<kit::Date>());
    array("Decimal", std::type_identity<DECIMAL>());
    array("Bool", std::type_identity<bool>());
    array("Variant", std::type_identity<platform::ScopedVariant>());
    array("Dispatch", std::type_identity<platform::ComPtr<IDispatch>>());
    array("Unknown", std::type_identity<platform::ComPtr<IUnknown>>());
}

} // namespace sample
