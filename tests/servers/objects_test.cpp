// Objects as COM sees them: interfaces, references, connections, creation.
#include "platform/registry_files.h"
#include "widget.h"

namespace server_tests {
namespace {

// A listener; its calls are found in the call log.
struct Listener final : kit::DispatchObject {
    Listener() : DispatchObject(definition()) {}
    static const kit::ClassDefinition& definition() {
        static const auto made =
            kit::ClassBuilder<Listener>("Listener", CLSID{}, widgetEvents, "IWidgetEvents")
                .withoutTypeInfo()
                .build();
        return *made;
    }
};

struct Objects : ServerTest {
    ComPtr<Widget> widget = kit::create<Widget>();
    IDispatch* dispatch = widget.get();
};

TEST_F(Objects, AnswerForTheirInterfacesAndKeepOneIdentity) {
    for (const IID& iid :
         {IID_IUnknown, IID_IDispatch, widgetInterface, IID_IConnectionPointContainer,
          IID_IProvideClassInfo, IID_IProvideClassInfo2}) {
        const auto other = platform::queryInterface<IUnknown>(dispatch, iid);
        ASSERT_TRUE(other);
        EXPECT_EQ(platform::queryInterface<IUnknown>(other.get(), IID_IUnknown).get(), dispatch);
    }
    void* nothing = &nothing;
    EXPECT_EQ(widget->QueryInterface(IID_IClassFactory, &nothing), E_NOINTERFACE);
    EXPECT_EQ(nothing, nullptr);
    EXPECT_EQ(widget->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
    EXPECT_EQ(widget->references(), 1u);
}

TEST_F(Objects, NameTheirClassAndItsEvents) {
    ComPtr<ITypeInfo> info;
    ASSERT_EQ(widget->GetClassInfo(info.put()), S_OK);
    ScopedBstr name;
    ASSERT_EQ(info->GetDocumentation(-1, name.put(), nullptr, nullptr, nullptr), S_OK);
    EXPECT_EQ(platform::viewOf(name.get()), OLESTR("Widget"));
    GUID iid{};
    EXPECT_EQ(widget->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &iid), S_OK);
    EXPECT_EQ(iid, widgetEvents);
}

TEST_F(Objects, AreCountedAndNamedWhileAlive) {
    const int before = kit::liveObjects();
    auto second = kit::create<Widget>();
    auto listener = kit::create<Listener>();
    EXPECT_EQ(kit::liveObjects(), before + 2);
    EXPECT_EQ(kit::liveObjectNames().front(), "Listener");
    second.reset();
    EXPECT_EQ(kit::liveObjects(), before + 1);
}

TEST_F(Objects, SendEventsToEverySinkUntilItIsUnadvised) {
    ComPtr<IConnectionPoint> point;
    EXPECT_EQ(widget->FindConnectionPoint(IID_IDispatch, point.put()), CONNECT_E_NOCONNECTION);
    ASSERT_EQ(widget->FindConnectionPoint(widgetEvents, point.put()), S_OK);
    ComPtr<IConnectionPointContainer> container;
    ASSERT_EQ(point->GetConnectionPointContainer(container.put()), S_OK);
    EXPECT_EQ(platform::queryInterface<IUnknown>(container.get(), IID_IUnknown).get(), dispatch);

    const auto first = kit::createDispatch<Listener>();
    const auto second = kit::createDispatch<Listener>();
    DWORD cookies[2] = {};
    ASSERT_EQ(point->Advise(first.get(), &cookies[0]), S_OK);
    ASSERT_EQ(point->Advise(second.get(), &cookies[1]), S_OK);
    kit::CallLog log;
    widget->fire(1, 2.5, widget->name());
    ASSERT_EQ(log.calls().size(), 2u);
    EXPECT_EQ(log.calls()[0].dispid, 1);
    EXPECT_EQ(log.calls()[0].flags, DISPATCH_METHOD);
    ASSERT_EQ(log.calls()[0].arguments.size(), 2u);
    EXPECT_EQ(log.calls()[0].arguments[1].value->dblVal, 2.5);
    EXPECT_EQ(log.calls()[0].arguments[0].vt, VT_BSTR);

    EXPECT_EQ(point->Unadvise(cookies[0]), S_OK);
    EXPECT_EQ(point->Unadvise(cookies[0]), CONNECT_E_NOCONNECTION);
    log.clear();
    widget->fire(2);
    EXPECT_EQ(log.calls().size(), 1u);
    EXPECT_EQ(point->Unadvise(cookies[1]), S_OK);
    EXPECT_EQ(widget->events().connections(), 0u);
    EXPECT_EQ(point->Advise(point.get(), &cookies[0]), CONNECT_E_CANNOTCONNECT);
}

TEST_F(Objects, AreCreatedByProgIdWhileTheirClassIsRegistered) {
    platform::clearRegistry();
    kit::registerProgId("Kit.Widget.1", widgetClass);
    CLSID clsid{};
    ASSERT_EQ(CLSIDFromProgID(OLESTR("Kit.Widget.1"), &clsid), S_OK);
    EXPECT_EQ(clsid, widgetClass);
    ComPtr<IDispatch> made;
    {
        const auto registration = kit::registerInProcess<Widget>();
        ASSERT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_SERVER, IID_IDispatch, made.putVoid()),
                  S_OK);
        EXPECT_EQ(get(made.get(), OLESTR("Name")).text(), "8:widget");
        ComPtr<IUnknown> none;
        EXPECT_EQ(CoCreateInstance(clsid, dispatch, CLSCTX_SERVER, IID_IUnknown, none.putVoid()),
                  CLASS_E_NOAGGREGATION);
    }
    made.reset();
    EXPECT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_SERVER, IID_IDispatch, made.putVoid()),
              REGDB_E_CLASSNOTREG);
    platform::clearRegistry();
}

} // namespace
} // namespace server_tests
