// Objects that the sample server hands out one by one, in a collection, in arrays.
#pragma once

#include "servers/sample/child.h"

namespace sample {

// A collection of children, counted from 1. Item and Count come from an interface that it inherits.
class Items final : public kit::DispatchObject {
  public:
    Items();
    static const kit::ClassDefinition& definition();

    LONG count() const { return static_cast<LONG>(children_.size()); }
    // Raises DISP_E_BADINDEX.
    platform::ComPtr<IDispatch> item(LONG index) const;
    platform::ComPtr<IDispatch> add(platform::OleView name);

    const std::vector<platform::ComPtr<IDispatch>>& children() const { return children_; }

  private:
    std::vector<platform::ComPtr<IDispatch>> children_;
};

// An object that doesn't describe itself: its members are reached by name only.
class Bare final : public kit::DispatchObject {
  public:
    Bare() : DispatchObject(definition()) {}
    static const kit::ClassDefinition& definition();

    platform::OleString name() const { return name_; }
    void setName(platform::OleString name) { name_ = std::move(name); }
    double twice(double x) { return 2 * x; }

  private:
    platform::OleString name_ = OLESTR("bare");
};

} // namespace sample
