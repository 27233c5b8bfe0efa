// A small object that the sample server hands out.
#pragma once

#include "servers/kit/dispatch_object.h"

namespace sample {

// "Sample.Child.1": a name and a number.
class Child final : public kit::DispatchObject {
  public:
    explicit Child(platform::OleString name = OLESTR("child"));
    static const kit::ClassDefinition& definition();

    platform::OleString name() const { return name_; }
    void setName(platform::OleString name) { name_ = std::move(name); }
    double value() const { return value_; }
    void setValue(double value) { value_ = value; }
    double increment(kit::Optional<double> by) { return value_ += by.value_or(1); }

  private:
    platform::OleString name_;
    double value_ = 0;
};

} // namespace sample
