// Custom display of generated classes.
#include "classmodel/custom_display.h"

#include "classmodel/instance_record.h"
#include "comruntime/interned.h"
#include "host/class.h"
#include "host/object_array.h"
#include "host/text.h"

#include <string>

namespace axlink2 {

COMCustomDispMethodBase::COMCustomDispMethodBase(const char* output)
    : signature(hos::HOSMethodSignature::createMethodSignature()) {
    signature->addInput(internedId("any"));
    signature->addOutput(internedId(output));
}

void COMGetHeaderMethodInfo::invoke(const hos::HOSClient*, std::uint32_t* outputCount,
                                    hos::HOSValue* outputs, std::int32_t, hos::HOSValue* inputs) {
    const hos::HOSInterfacePtr object = hoGetArrayElement(inputs[0].array(), 0);
    if (!object) raiseInvalidHandle();
    hos::id classId;
    object->getClass()->getID(&classId);
    const std::string text = "\t" + classId.str() + "\n";
    outputs[0] = hos::HOSValue::ofPointer(new std::u16string(hsys::i18n::to_ustring(text)));
    *outputCount = 1;
}

void COMGetPropertyGroupsMethod::invoke(const hos::HOSClient*, std::uint32_t* outputCount,
                                        hos::HOSValue* outputs, std::int32_t, hos::HOSValue*) {
    *outputCount = 1;
    outputs[0] = hos::HOSValue();
}

} // namespace axlink2
