// The sample Automation server: one member of every sort that a client meets.
#pragma once

#include "servers/sample/child.h"
#include "servers/sample/events.h"

#include <map>

namespace sample {

using kit::InOut;
using kit::Optional;
using kit::Out;
using platform::OleString;
using platform::OleView;

// "Sample.Server.1".
class Server final : public Events {
  public:
    Server();
    ~Server() override;
    static const kit::ClassDefinition& definition();

    // Arithmetic and text.
    double compute(double x) { return x * x + 1; }
    double add(double a, double b) { return a + b; }
    void divide(LONG dividend, LONG divisor, Out<LONG> quotient, Out<LONG> remainder);
    OleString concat(OleView a, OleView b) { return OleString(a) += b; }
    OleString greet(Optional<OleView> name);
    double scale(double value, Optional<double> factor) { return value * factor.value_or(2); }
    void swap(InOut<LONG> a, InOut<LONG> b) { std::swap(a.value, b.value); }
    double minMax(double a, double b, double c, Out<double> min, Out<double> max);
    Color next(Color color);
    double sum(kit::ArrayView<double> values);
    kit::Array<double> makeVector(LONG count);
    void reset();

    // Outputs only.
    void outI4(Out<LONG> value) { value = 42; }
    void outBSTR(Out<OleString> value) { value = OLESTR("out"); }
    void outBool(Out<bool> value) { value = true; }
    void outVariant(Out<platform::ScopedVariant> value) { value = kit::toVariant(42.5); }
    void outDispatch(Out<platform::ComPtr<IDispatch>> value) { value = newChild({}); }

    // Failures and faults.
    void fail(LONG hresult) { throw kit::ComFailure{hresult}; }
    void raise(LONG code);
    void failQuietly() { throw kit::ServerError{.scode = E_FAIL}; }
    void crash();
    void crashDivide();
    void crashCall();
    void crashThrow();

    // Objects.
    platform::ComPtr<IDispatch> newChild(Optional<OleView> name);
    platform::ComPtr<IDispatch> self() { return platform::ComPtr<IDispatch>::borrow(this); }
    // How many objects came: 1, or 0 for null.
    LONG countOf(IDispatch* child) { return child ? 1 : 0; }
    void registerActive();
    void revokeActive();

    // Members that clients treat in a special way.
    LONG hiddenMethod() { return 1; }
    LONG restrictedMethod() { return 2; }
    LONG underscore() { return 3; }
    bool takePointer(LONGLONG address) { return address != 0; }
    OleString item(LONG index) const;
    void setItem(LONG index, OleString text) { items_[index] = std::move(text); }
    double level(Optional<LONG> channel) { return channel.value_or(0) * 10.0; }

    // Properties.
    OleString name() const { return name_; }
    void setName(OleString name);
    bool visible() const { return visible_; }
    void setVisible(bool visible) { visible_ = visible; }
    SHORT width() const { return width_; }
    void setWidth(SHORT width) { width_ = width; }
    double height() const { return height_; }
    void setHeight(double height) { height_ = height; }
    Color color() const { return color_; }
    void setColor(Color color) { color_ = color; }
    LONG count() const { return count_; }
    platform::ComPtr<IDispatch> child() const { return child_; }
    void setChild(platform::ComPtr<IDispatch> child) { child_ = std::move(child); }
    void setWriteOnly(double value) { height_ = value; }
    kit::Date created() const { return {36526.5}; }
    CY price() const { return price_; }
    void setPrice(CY price) { price_ = price; }
    OleString baseName() const { return baseName_; }
    void setBaseName(OleString name) { baseName_ = std::move(name); }
    LONG baseMethod(LONG value) { return value + 100; }

  private:
    static void declareMethods(kit::ClassBuilder<Server>& builder);
    static void declareFailures(kit::ClassBuilder<Server>& builder);
    static void declareProperties(kit::ClassBuilder<Server>& builder);

    OleString name_ = OLESTR("Sample");
    OleString baseName_ = OLESTR("Base");
    bool visible_ = false;
    SHORT width_ = 100;
    double height_ = 50;
    Color color_ = Color::Red;
    LONG count_ = 0;
    CY price_{};
    platform::ComPtr<IDispatch> child_;
    std::map<LONG, OleString> items_;
    platform::ScopedVariant tag_;
    OleString kind_ = OLESTR("sample");
    DWORD active_ = 0;
};

} // namespace sample
