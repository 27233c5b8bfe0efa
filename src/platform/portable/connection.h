// Connection points, collections' enumerators, property pages; and, through persistence.h, the
// interfaces through which an object keeps its state.
#pragma once

#include "platform/portable/base_types.h"
#include "platform/portable/guid.h"
#include "platform/portable/persistence.h"
#include "platform/portable/unknown.h"
#include "platform/portable/variant_types.h"

struct IConnectionPointContainer;

typedef struct tagCONNECTDATA {
    IUnknown* pUnk;
    DWORD dwCookie;
} CONNECTDATA, *LPCONNECTDATA;

extern "C" const IID IID_IConnectionPoint;
extern "C" const IID IID_IConnectionPointContainer;
extern "C" const IID IID_IEnumConnections;
extern "C" const IID IID_IEnumConnectionPoints;
extern "C" const IID IID_IEnumVARIANT;
extern "C" const IID IID_ISpecifyPropertyPages;

struct IEnumConnections : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE Next(ULONG count, LPCONNECTDATA items, ULONG* fetched) = 0;
    virtual HRESULT STDMETHODCALLTYPE Skip(ULONG count) = 0;
    virtual HRESULT STDMETHODCALLTYPE Reset() = 0;
    virtual HRESULT STDMETHODCALLTYPE Clone(IEnumConnections** clone) = 0;
};

struct IConnectionPoint : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* iid) = 0;
    virtual HRESULT STDMETHODCALLTYPE
    GetConnectionPointContainer(IConnectionPointContainer** container) = 0;
    virtual HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) = 0;
    virtual HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) = 0;
    virtual HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections** enumerator) = 0;
};

struct IEnumConnectionPoints : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE Next(ULONG count, IConnectionPoint** items,
                                           ULONG* fetched) = 0;
    virtual HRESULT STDMETHODCALLTYPE Skip(ULONG count) = 0;
    virtual HRESULT STDMETHODCALLTYPE Reset() = 0;
    virtual HRESULT STDMETHODCALLTYPE Clone(IEnumConnectionPoints** clone) = 0;
};

struct IConnectionPointContainer : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** enumerator) = 0;
    virtual HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID iid, IConnectionPoint** point) = 0;
};

struct IEnumVARIANT : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* items, ULONG* fetched) = 0;
    virtual HRESULT STDMETHODCALLTYPE Skip(ULONG count) = 0;
    virtual HRESULT STDMETHODCALLTYPE Reset() = 0;
    virtual HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** clone) = 0;
};

typedef struct tagCAUUID {
    ULONG cElems;
    GUID* pElems;
} CAUUID;

struct ISpecifyPropertyPages : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE GetPages(CAUUID* pages) = 0;
};
