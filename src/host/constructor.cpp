// A class's name written as a function: an object, completed by the class's method of its own name.
#include "host/host_messages.h"
#include "host/live_class.h"
#include "host/object_array.h"

namespace velmar {
namespace {

class Constructor final : public Hfunction_handle {
  public:
    explicit Constructor(LiveClass& owner) : owner_(owner) {}

    void call(int outputCount, hxArray** outputs, int inputCount,
              const hxArray* const* inputs) override {
        MethodGroup* methods = owner_.methods(hos::internal::makeInterned(owner_.getName()));
        if (!methods) fail(keys::NoConstructor, owner_.classId().str());
        const Inputs given(inputs, static_cast<std::size_t>(inputCount));
        const MethodPlan& plan = methods->choose(given, outputCount);

        hos::HOSInterfacePtr object;
        owner_.newInstance(&object);
        owner_.prepareInstance(object);
        owner_.completeInstance(object);
        harray::unique_array made(hoCreateHOSMatrix(1, 1, owner_.classId()));
        hoSetArrayElement(made.get(), 0, object);
        // The method completes the object in its first output.
        plan.invoke(std::max(outputCount, 1), outputs, given, made.release());
    }

  private:
    LiveClass& owner_;
};

} // namespace

std::unique_ptr<Hfunction_handle> makeConstructor(LiveClass& owner) {
    return std::make_unique<Constructor>(owner);
}

} // namespace velmar
