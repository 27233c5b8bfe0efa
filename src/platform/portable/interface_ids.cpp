// The identifiers of the interfaces that the runtime half declares.
#include "platform/portable/activation.h"
#include "platform/portable/connection.h"
#include "platform/portable/typeinfo.h"

namespace {

// Most of COM's own identifiers differ in their first number only.
constexpr GUID comGuid(std::uint32_t first) {
    return {first, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
}

constexpr GUID controlGuid(std::uint32_t first) {
    return {first, 0xBAB4, 0x101A, {0xB6, 0x9C, 0x00, 0xAA, 0x00, 0x34, 0x1D, 0x07}};
}

} // namespace

extern "C" {
const IID IID_IClassFactory = comGuid(0x00000001);
const IID IID_IStorage = comGuid(0x0000000B);
const IID IID_IStream = comGuid(0x0000000C);
const IID IID_IEnumSTATSTG = comGuid(0x0000000D);
const IID IID_IPersistStream = comGuid(0x00000109);
const IID IID_IPersistStorage = comGuid(0x0000010A);
const IID IID_IPersistFile = comGuid(0x0000010B);
const IID IID_IPersist = comGuid(0x0000010C);
const IID IID_ITypeInfo = comGuid(0x00020401);
const IID IID_ITypeLib = comGuid(0x00020402);
const IID IID_ITypeComp = comGuid(0x00020403);
const IID IID_IEnumVARIANT = comGuid(0x00020404);
const IID IID_ICreateTypeInfo = comGuid(0x00020405);
const IID IID_ICreateTypeLib = comGuid(0x00020406);
const IID IID_ICreateTypeLib2 = comGuid(0x0002040F);

const IID IID_IProvideClassInfo = controlGuid(0xB196B283);
const IID IID_IConnectionPointContainer = controlGuid(0xB196B284);
const IID IID_IEnumConnectionPoints = controlGuid(0xB196B285);
const IID IID_IConnectionPoint = controlGuid(0xB196B286);
const IID IID_IEnumConnections = controlGuid(0xB196B287);
const IID IID_ISpecifyPropertyPages = controlGuid(0xB196B28B);

const IID IID_IProvideClassInfo2 = {
    0xA6BC3AC0, 0xDBAA, 0x11CE, {0x9D, 0xE3, 0x00, 0xAA, 0x00, 0x4B, 0xB8, 0x51}};
const IID IID_IPersistStreamInit = {
    0x7FD52380, 0x4E07, 0x101B, {0xAE, 0x2D, 0x08, 0x00, 0x2B, 0x2E, 0xC7, 0x13}};
const IID IID_ISequentialStream = {
    0x0C733A30, 0x2A1C, 0x11CE, {0xAD, 0xE5, 0x00, 0xAA, 0x00, 0x44, 0x77, 0x3D}};
const IID IID_IErrorInfo = {
    0x1CF2B120, 0x547D, 0x101B, {0x8E, 0x65, 0x08, 0x00, 0x2B, 0x2B, 0xD1, 0x19}};
const IID IID_ISupportErrorInfo = {
    0xDF0B3D60, 0x548F, 0x101B, {0x8E, 0x65, 0x08, 0x00, 0x2B, 0x2B, 0xD1, 0x19}};
}
