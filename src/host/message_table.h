// Every message key of the module: component, key, and the kinds of its arguments.
//
// `NONE(space, component, key)` has no arguments; `ONE(..., A)` and `TWO(..., A, B)` have arguments
// of the kinds Integer, Narrow and Wide; `EITHER(..., A, B)` takes one argument of kind A or of B.
#pragma once

// clang-format off
#define VELMAR_MESSAGES(NONE, ONE, TWO, EITHER)                                                    \
    NONE(COM, "VELMAR:COM", invalidArg)                                                            \
    NONE(COM, "VELMAR:COM", numargs)                                                               \
    NONE(COM, "VELMAR:COM", unsupported64bit)                                                      \
    ONE(COM, "VELMAR:COM", invalidprogid, Narrow)                                                  \
    ONE(COM, "VELMAR:COM", norunningserver, Narrow)                                                \
    ONE(class_, "VELMAR:class", InvalidEnumValue, Narrow)                                          \
    NONE(class_, "VELMAR:class", InvalidHandle)                                                    \
    NONE(string, "VELMAR:string", MissingNotSupported)                                             \
    NONE(string, "VELMAR:string", MustBeStringScalarOrCharacterVector)                             \
    NONE(COM, "VELMAR:COM", invalidargumenttype)                                                   \
    NONE(COM, "VELMAR:COM", cell_invalid_contents)                                                 \
    NONE(COM, "VELMAR:COM", cell_invalid_dimensions)                                               \
    NONE(COM, "VELMAR:COM", sparse_array_notsupported)                                             \
    EITHER(COM, "VELMAR:COM", AmbiguousPropertyException, Narrow, Wide)                            \
    NONE(COM, "VELMAR:COM", InvalidAppData)                                                        \
    NONE(HostGraphics::Appdata, "VELMAR:HostGraphics:Appdata", InvalidNameAppdata)                 \
    NONE(COM, "VELMAR:COM", invalidmethodname)                                                     \
    NONE(COM, "VELMAR:COM", invalidnumargs)                                                        \
    ONE(COM, "VELMAR:COM", invalidruntimeproperty, Narrow)                                         \
    NONE(class_, "VELMAR:class", BadParamValuePairs)                                               \
    NONE(class_, "VELMAR:class", EmptyParamCell)                                                   \
    NONE(COM, "VELMAR:COM", loadobjnotsupported)                                                   \
    TWO(legacy_two_part, "VELMAR:legacy_two_part", noSuchMethodOrField, Narrow, Narrow)            \
    ONE(COM, "VELMAR:COM", propertyexisterror, Narrow)                                             \
    NONE(COM, "VELMAR:COM", propertynameerror)                                                     \
    NONE(COM, "VELMAR:COM", serializationerror)                                                    \
    NONE(COM, "VELMAR:COM", toomanyinargs)                                                         \
    ONE(COM, "VELMAR:COM", errorregisterevents, Wide)                                              \
    /* Errors whose identifier is another one than the key's. */                                   \
    ONE(COM, "VELMAR:COM", servercreationfailedProgid, Narrow)                                     \
    ONE(COM, "VELMAR:COM", servercreationfailedSysMsg, Wide)                                       \
    ONE(COM, "VELMAR:COM", unknownparamPosition, Integer)                                          \
    TWO(COM, "VELMAR:COM", invalidprogidNameAndErrcode, Narrow, Narrow)                            \
    EITHER(COM, "VELMAR:COM", COMException, Narrow, Wide)                                          \
    ONE(ErrorRecovery, "VELMAR:ErrorRecovery", ValidArgumentTypeMissing, Narrow)                   \
    /* Warnings. */                                                                                \
    NONE(COM, "VELMAR:COM", unsupported_safearray_type)                                            \
    NONE(COM, "VELMAR:COM", unsupportedVARIANTtype)                                                \
    NONE(COM, "VELMAR:COM", hxCreateCellArray_Failed)                                              \
    ONE(COM, "VELMAR:COM", variant_conversion_failed, Wide)                                        \
    NONE(COM, "VELMAR:COM", noPropPage)                                                            \
    NONE(COM, "VELMAR:COM", propPageError)                                                         \
    /* Parts of other messages. */                                                                 \
    NONE(COM, "VELMAR:COM", variant_conversion_failedBYREF)                                        \
    NONE(COM, "VELMAR:COM", variant_conversion_failedCY)                                           \
    NONE(COM, "VELMAR:COM", variant_conversion_failedString)                                       \
    NONE(COM, "VELMAR:COM", InvalidGetArgInCell)                                                   \
    NONE(COM, "VELMAR:COM", InvalidGetSecondArg)                                                   \
    TWO(class_, "VELMAR:class", AmbiguousPropertyException, Narrow, Narrow)                        \
    NONE(COM, "VELMAR:COM", errorregistereventsAdvise)                                             \
    NONE(COM, "VELMAR:COM", errorregistereventsConnectionPoint)                                    \
    NONE(COM, "VELMAR:COM", errorregistereventsConnectionPointContainer)                           \
    NONE(COM, "VELMAR:COM", DISP_E_BADPARAMCOUNT_ErrMsg)                                           \
    NONE(COM, "VELMAR:COM", DISP_E_MEMBERNOTFOUND_ErrMsg)                                          \
    NONE(COM, "VELMAR:COM", DISP_E_NONAMEDARGS_ErrMsg)                                             \
    NONE(COM, "VELMAR:COM", DISP_E_OVERFLOW_ErrMsg)                                                \
    NONE(COM, "VELMAR:COM", DISP_E_PARAMNOTOPTIONAL_ErrMsg)                                        \
    NONE(COM, "VELMAR:COM", DISP_E_UNKNOWNLCID_ErrMsg)                                             \
    NONE(COM, "VELMAR:COM", DISP_E_UNKNOWNNAME_ErrMsg)                                             \
    ONE(COM, "VELMAR:COM", DISP_E_PARAMNOTFOUND_ErrMsg, Integer)                                   \
    ONE(COM, "VELMAR:COM", DISP_E_TYPEMISMATCH_ErrMsg, Integer)                                    \
    ONE(COM, "VELMAR:COM", DISP_E_EXCEPTION_ErrMsg, Wide)                                          \
    ONE(COM, "VELMAR:COM", DISP_E_EXCEPTION_ErrMsgNL, Wide)                                        \
    ONE(COM, "VELMAR:COM", DISP_E_EXCEPTION_PartDescriptionMsg, Wide)                              \
    ONE(COM, "VELMAR:COM", DISP_E_EXCEPTION_PartHelpFileMsg, Wide)                                 \
    ONE(COM, "VELMAR:COM", DISP_E_EXCEPTION_PartSourceMsg, Wide)                                   \
    ONE(COM, "VELMAR:COM", DISP_E_default_ErrMsg, Wide)                                            \
    ONE(COM, "VELMAR:COM", DISP_E_EXCEPTION_PartHelpContextID, Narrow)                             \
    ONE(COM, "VELMAR:COM", DISP_E_default_ErrMsgErrCode, Narrow)
// clang-format on
