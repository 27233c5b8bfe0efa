// A server with a member of every sort that the kit can declare.
#pragma once

#include "calls.h"

namespace server_tests {

enum class Shade : LONG { Dark = -5, Light = 7 };

inline constexpr IID widgetBase = kit::guid("0F3B3A30-1111-4E6B-8A11-000000000001");
inline constexpr IID widgetInterface = kit::guid("0F3B3A30-1111-4E6B-8A11-000000000002");
inline constexpr IID widgetEvents = kit::guid("0F3B3A30-1111-4E6B-8A11-000000000003");
inline constexpr IID widgetExtra = kit::guid("0F3B3A30-1111-4E6B-8A11-000000000004");
inline constexpr CLSID widgetClass = kit::guid("0F3B3A30-1111-4E6B-8A11-000000000005");

class Widget final : public kit::DispatchObject {
  public:
    Widget() : DispatchObject(definition()) {}
    static const kit::ClassDefinition& definition();

    double add(double a, double b) { return a + b; }
    SHORT narrow(SHORT value) { return value; }
    void divide(LONG a, LONG b, kit::Out<LONG> quotient, kit::Out<OleString> note) {
        if (b == 0)
            throw kit::ServerError{.source = OLESTR("Widget"),
                                   .description = OLESTR("No."),
                                   .helpFile = OLESTR("widget.chm"),
                                   .helpContext = 7,
                                   .wCode = 12,
                                   .scode = E_ABORT};
        quotient = a / b;
        note = OLESTR("divided");
    }
    void twice(kit::InOut<OleString> text) { text = text.value + text.value; }
    OleString pad(OleView text, kit::Optional<LONG> count) {
        return OleString(text) + OleString(static_cast<std::size_t>(count.value_or(1)), '.');
    }
    Shade invert(Shade shade) { return shade == Shade::Dark ? Shade::Light : Shade::Dark; }
    std::vector<OleString> reversed(std::vector<OleString> texts) {
        std::ranges::reverse(texts);
        return texts;
    }
    double total(kit::ArrayView<double> values) {
        double sum = 0;
        for (double value : kit::elementsOf<double>(values.array))
            sum += value;
        return sum;
    }
    bool isObject(IDispatch* object) { return object != nullptr; }
    LONG kindOf(const VARIANT& value) { return value.vt; }
    kit::HResult code(kit::HResult value) { return value; }

    OleString name() const { return name_; }
    void setName(OleView name) { name_ = name; }
    ComPtr<IDispatch> partner() const { return partner_; }
    void setPartner(ComPtr<IDispatch> partner) { partner_ = std::move(partner); }
    double cell(LONG row, kit::Optional<LONG> column) const {
        return row * 10 + column.value_or(0) + offset_;
    }
    void setCell(LONG row, kit::Optional<LONG> column, double value) {
        offset_ = value - row * 10 - column.value_or(0);
    }
    LONG weight() const { return 5; }

  private:
    OleString name_ = OLESTR("widget");
    ComPtr<IDispatch> partner_;
    double offset_ = 0;
    double count_ = 3;
    ScopedVariant tag_;
};

} // namespace server_tests
