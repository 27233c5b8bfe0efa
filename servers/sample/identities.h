// The identities of the sample server's library, classes and interfaces.
#pragma once

#include "servers/kit/class_definition.h"
#include "servers/kit/guid.h"

namespace sample {

inline constexpr GUID libraryId = kit::guid("7B1C2D10-52C4-4C6E-9D6A-2A6F0E5B1C00");
inline constexpr CLSID serverClass = kit::guid("7B1C2D10-52C4-4C6E-9D6A-2A6F0E5B1C01");
inline constexpr CLSID childClass = kit::guid("7B1C2D10-52C4-4C6E-9D6A-2A6F0E5B1C02");
inline constexpr CLSID itemsClass = kit::guid("7B1C2D10-52C4-4C6E-9D6A-2A6F0E5B1C03");
inline constexpr CLSID bareClass = kit::guid("7B1C2D10-52C4-4C6E-9D6A-2A6F0E5B1C04");
inline constexpr IID baseInterface = kit::guid("7B1C2D10-52C4-4C6E-9D6A-2A6F0E5B1C10");
inline constexpr IID serverInterface = kit::guid("7B1C2D10-52C4-4C6E-9D6A-2A6F0E5B1C11");
inline constexpr IID childInterface = kit::guid("7B1C2D10-52C4-4C6E-9D6A-2A6F0E5B1C12");
inline constexpr IID eventsInterface = kit::guid("7B1C2D10-52C4-4C6E-9D6A-2A6F0E5B1C13");
inline constexpr IID collectionInterface = kit::guid("7B1C2D10-52C4-4C6E-9D6A-2A6F0E5B1C14");
inline constexpr IID itemsInterface = kit::guid("7B1C2D10-52C4-4C6E-9D6A-2A6F0E5B1C15");
inline constexpr IID bareInterface = kit::guid("7B1C2D10-52C4-4C6E-9D6A-2A6F0E5B1C16");

// Documents.
inline constexpr GUID documentLibraryId = kit::guid("7B1C2D10-52C4-4C6E-9D6A-2A6F0E5B1D00");
inline constexpr CLSID fileDocumentClass = kit::guid("7B1C2D10-52C4-4C6E-9D6A-2A6F0E5B1D01");
inline constexpr CLSID storageDocumentClass = kit::guid("7B1C2D10-52C4-4C6E-9D6A-2A6F0E5B1D02");
inline constexpr CLSID streamInitDocumentClass = kit::guid("7B1C2D10-52C4-4C6E-9D6A-2A6F0E5B1D03");
inline constexpr CLSID streamDocumentClass = kit::guid("7B1C2D10-52C4-4C6E-9D6A-2A6F0E5B1D04");
inline constexpr IID fileDocumentInterface = kit::guid("7B1C2D10-52C4-4C6E-9D6A-2A6F0E5B1D11");
inline constexpr IID storageDocumentInterface = kit::guid("7B1C2D10-52C4-4C6E-9D6A-2A6F0E5B1D12");
inline constexpr IID streamInitDocumentInterface =
    kit::guid("7B1C2D10-52C4-4C6E-9D6A-2A6F0E5B1D13");
inline constexpr IID streamDocumentInterface = kit::guid("7B1C2D10-52C4-4C6E-9D6A-2A6F0E5B1D14");

// Events of the source interface.
inline constexpr DISPID tickEvent = 1;
inline constexpr DISPID renamedEvent = 2;
inline constexpr DISPID doneEvent = 3;
inline constexpr DISPID everythingEvent = 4;
inline constexpr DISPID askedEvent = 5;
inline constexpr DISPID childAddedEvent = 6;
inline constexpr DISPID measuredEvent = 7;

// The type library of the classes that describe themselves.
const kit::Library& library();
// The same for the documents.
const kit::Library& documentLibrary();

} // namespace sample
