// How a class declares its events.
#include "classmodel/class_description.h"
#include "comruntime/type_description.h"
#include "events/event_info.h"
#include "events/source.h"

namespace {

using namespace axlink2;
using namespace axlink2::test;

struct EventDeclaration : EventTest {
    static std::vector<hos::HOSEventInfo*> eventsOf(const Array& object) {
        hos::HOSIterator events;
        handle(object)->getClass()->getEvents(&events);
        std::vector<hos::HOSEventInfo*> infos;
        while (events.hasMoreElements())
            infos.push_back(hos::hosiToEvent(events.nextElement()));
        return infos;
    }
    static const COMBaseClassInfo& infoOf(const Array& object) {
        return static_cast<COMBaseClassInfo&>(*handle(object)->getClass()->getClassInfo());
    }
};

TEST_F(EventDeclaration, FollowsTheSourceInterfaceByAscendingDispid) {
    std::vector<std::string> names;
    for (hos::HOSEventInfo* event : eventsOf(h))
        names.push_back(std::string(event->getName()) + " " + event->getDescription());
    EXPECT_EQ(names, (std::vector<std::string>{"Last -7", "Tick 1", "Renamed 2", "Done 3"}));
    EXPECT_EQ(infoOf(h).eventDescriptors.size(), 4u);
    EXPECT_EQ(infoOf(h).eventsByDispid.at(Source::done)->name, "Done");

    hos::HOSEventInfo& event = *eventsOf(h)[1];
    hos::id type;
    EXPECT_EQ(event.getEventDataType(&type)->str(), "event.EventData");
    EXPECT_STREQ(event.getDetailedDescription(), "");
    EXPECT_TRUE(event.eventTrait());
    EXPECT_EQ(event.getSendAccess(), 2);
    EXPECT_EQ(event.getListenAccess(), 0);
}

TEST_F(EventDeclaration, IsWhatEventsTells) {
    EXPECT_EQ(printed([&] { call(h, "events", 0); }),
              "\tLast = void Last(Variant Arg1, handle Arg2)\n"
              "\tTick = void Tick(int32 scalar Count)\n"
              "\tRenamed = void Renamed(unicodeString OldName, unicodeString NewName)\n"
              "\tDone = void Done()\n");
    EXPECT_EQ(plain(ask(1, h, "events").get()),
              "(Last='void Last(Variant Arg1, handle Arg2)' Tick='void Tick(int32 "
              "scalar Count)' "
              "Renamed='void Renamed(unicodeString OldName, unicodeString NewName)' "
              "Done='void Done()')");
}

TEST_F(EventDeclaration, IsMissingForAServerWithoutASource) {
    const Array gadget = start<Gadget>("Test.Silent");
    EXPECT_EQ(errorOf([&] { listen(gadget, "Tick"); }), "VELMAR:class:UndefinedEvent");
}

// Type information may give fewer names than there are parameters, or the same one twice.
TEST_F(EventDeclaration, GivesEveryParameterANameOfItsOwn) {
    COMMemberEntry entry("Odd");
    entry.method = std::make_unique<COMMemberSignature>();
    entry.method->parameterTypes.assign(6, VARTYPE{VT_I4});
    entry.method->parameterNames = {"Arg4", "EventID", "x", "x", ""};
    const COMEventDescriptor event(entry);
    EXPECT_EQ(event.parameterNames,
              (std::vector<std::string>{"Arg4", "Arg2", "x", "Arg4_", "Arg5", "Arg6"}));
    EXPECT_EQ(event.fieldNames.size(), 9u);
    EXPECT_EQ(event.converters.size(), 6u);
}

} // namespace
