// Host arrays: column-major, any number of dimensions, data shared and copied on write.
#pragma once

#include <complex>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct hxArray;

// The host's class ids. Strings and objects are both opaque.
enum hxClassID : int {
    hxUNKNOWN_CLASS = 0,
    hxCELL_CLASS = 1,
    hxSTRUCT_CLASS = 2,
    hxLOGICAL_CLASS = 3,
    hxCHAR_CLASS = 4,
    hxVOID_CLASS = 5,
    hxDOUBLE_CLASS = 6,
    hxSINGLE_CLASS = 7,
    hxINT8_CLASS = 8,
    hxUINT8_CLASS = 9,
    hxINT16_CLASS = 10,
    hxUINT16_CLASS = 11,
    hxINT32_CLASS = 12,
    hxUINT32_CLASS = 13,
    hxINT64_CLASS = 14,
    hxUINT64_CLASS = 15,
    hxFUNCTION_CLASS = 16,
    hxOPAQUE_CLASS = 17,
    hxOBJECT_CLASS = 18,
};

enum hxComplexity : int { hxREAL = 0, hxCOMPLEX = 1 };

// Creating. Each gives a new array that the caller owns, elements zero, null or empty.
// Char arrays hold UTF-16; narrow text is UTF-8. A null text gives a 0-by-0 char array, an empty
// one too; any other a row.
hxArray* hxCreateString(const char* text);
hxArray* hxCreateString_UTF16(const char16_t* text);
hxArray* hxCreateDoubleScalar(double value);
hxArray* hxCreateLogicalScalar(bool value);
hxArray* hxCreateLogicalArray(std::size_t dimensions, const std::size_t* extents);
hxArray* hxCreateNumericArray(std::size_t dimensions, const std::size_t* extents, hxClassID type,
                              hxComplexity complexity);
// The same with elements that hold anything, for whoever writes all of them.
hxArray* hxCreateUninitNumericArray(std::size_t dimensions, const std::size_t* extents,
                                    hxClassID type, hxComplexity complexity);
// Double or logical, with room for `capacity` entries that are not zero.
hxArray* hxCreateSparse(std::size_t rows, std::size_t columns, std::size_t capacity,
                        hxComplexity complexity);
hxArray* hxCreateSparseLogical(std::size_t rows, std::size_t columns, std::size_t capacity);
hxArray* hxCreateCellMatrix(std::size_t rows, std::size_t columns);
hxArray* hxCreateCellArray(std::size_t dimensions, const std::size_t* extents);
hxArray* hxCreateStructMatrix(std::size_t rows, std::size_t columns, int fields,
                              const char* const* names);
// A char matrix, one row per text, padded with blanks.
hxArray* hxCreateCharMatrix(const std::vector<std::u16string>& rows);
// An array with the same data, which is copied when either of the two is written to.
hxArray* hxCreateSharedDataCopy(const hxArray* array);
// `array` itself when nobody shares it, else a copy whose elements are shared, for writing.
// Takes the caller's reference and gives one back.
hxArray* hxUnshareShallow(hxArray* array);

// Shape and class. `hxGetN` is the product of all extents but the first.
hxClassID hxGetClassID(const hxArray* array);
// The class's name: "double", "cell", "string", or the qualified name of an object's class.
const char* hxGetClassName(const hxArray* array);
std::size_t hxGetM(const hxArray* array);
std::size_t hxGetN(const hxArray* array);
std::size_t hxGetNumberOfDimensions(const hxArray* array);
const std::size_t* hxGetDimensions(const hxArray* array);
std::size_t hxGetNumberOfElements(const hxArray* array);
std::size_t hxGetElementSize(const hxArray* array); // bytes, of one real element
bool hxIsEmpty(const hxArray* array);
bool hxIsScalar(const hxArray* array);
bool hxIsComplex(const hxArray* array);
bool hxIsSparse(const hxArray* array);
// Whether the array is of that class; "handle" holds for arrays of objects, "numeric" and "float"
// for the classes they name.
bool hxIsA(const hxArray* array, const char* className);
// Gives the array another shape of the same number of elements; false, unchanged, otherwise.
bool hxSetDimensions(hxArray* array, std::size_t dimensions, const std::size_t* extents);

// Data of numeric, logical and char arrays; null when there are no elements. Complex arrays hold
// interleaved pairs; sparse ones their entries. The writable form copies shared data first.
const void* hxGetData(const hxArray* array);
void* hxGetWritableData(hxArray* array);
bool* hxGetLogicals(hxArray* array);
// The first element as a double; 0 for an empty or a non-numeric array.
double hxGetScalar(const hxArray* array);
// Sparse arrays: row index of each entry, and `columns + 1` starts. The pointers are writable, for
// whoever fills a new array.
std::size_t* hxGetIr(const hxArray* array);
std::size_t* hxGetJc(const hxArray* array);

// 0-based linear index of a subscript. Raises when it lies outside.
std::size_t hxCalcSingleSubscript(const hxArray* array, std::size_t count,
                                  const std::size_t* subscripts);

// Elements of cells: the element stays the cell's, and null reads as 0-by-0 double to a program.
const hxArray* hxGetCell(const hxArray* cell, std::size_t index);
// Stores `value`, which the cell takes over. `hxSetCell` expects a slot that is null, the other
// destroys what it held.
void hxSetCell(hxArray* cell, std::size_t index, hxArray* value);
void hxReplaceCell(hxArray* cell, std::size_t index, hxArray* value);

// Fields of struct arrays. Numbers are 0-based; -1 stands for no such field.
int hxGetFieldNumber(const hxArray* array, const char* name);
const hxArray* hxGetField(const hxArray* array, std::size_t index, const char* name);
const hxArray* hxGetFieldByNumber(const hxArray* array, std::size_t index, int field);
// Destroys what the field held and takes `value` over. An unknown name is added.
void hxSetField(hxArray* array, std::size_t index, const char* name, hxArray* value);
// Takes `value` over without looking at what the field held.
void hxSetFieldByNumber(hxArray* array, std::size_t index, int field, hxArray* value);
int hxAddFieldToStruct(hxArray* array, const char* name);
void hxRemoveField(hxArray* array, int field); // the field's elements must be null
int get_number_of_struct_fields(const hxArray* array);
std::vector<std::string> get_struct_field_names(const hxArray* array);

// Text. One string for each row of a char matrix: an array of `rows` zero-ended UTF-16 texts of
// `columns` units; each, then the array of them, is freed with `hxFreeEx`.
char16_t** hxCharMatrixToStrings_UTF16(const hxArray* array);
void hxFreeEx(void* block);
// Whether `name` can name a variable: a letter, then letters, digits and underscores, at most 63.
bool hxIsValidVelName(const char16_t* name);

// Properties of element `index` of an object array. Reading gives a new array; writing converts
// `value`, which stays the caller's. Both go through the host's access checks.
hxArray* hxGetPropertyShared(const hxArray* objects, std::size_t index, const char* name);
void hxSetProperty(hxArray* objects, std::size_t index, const char* name, const hxArray* value);

// The number of arrays that exist now.
std::size_t hxLiveArrayCount();

namespace harray {

// Ends one owner's hold on an array: it is destroyed when nobody else has one. Null is ignored.
void destroyArray(hxArray* array);

namespace detail {

struct hxDestroy_deleter {
    void operator()(hxArray* array) const { destroyArray(array); }
};

// The same as the functions above, for any number of dimensions.
hxArray* do_create_numeric(std::size_t dimensions, const std::size_t* extents, hxClassID type,
                           hxComplexity complexity);
hxArray* do_create_cell(std::size_t dimensions, const std::size_t* extents);
hxArray* do_create_struct(std::size_t dimensions, const std::size_t* extents, int fields,
                          const char* const* names);
hxArray* do_shared_copy(const hxArray* array);

} // namespace detail

// An owned array.
using unique_array = std::unique_ptr<hxArray, detail::hxDestroy_deleter>;

// Between an owned array and the raw pointer that the host hands on.
inline unique_array from_velmar(hxArray* array) { return unique_array(array); }
inline hxArray* to_velmar(unique_array array) { return array.release(); }

// A char row of that text, zeros included.
unique_array create(std::u16string_view text);

} // namespace harray
