// The template plug-in, loaded and invoked by the reference engine the way a host does.
#include "Engine.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <string>

using namespace scribo::engine;

namespace {

struct MenuRecord {
  char16_t texts[3][128];
  uint32_t one;
};

struct CountNotesPlugin {
  short (*main)(int, void*);
  int (*init)(void*, uint32_t*);
  int (*enumerate)(void*, short, MenuRecord*);
  int (*invoke)(void*, short, EREGION*);

  CountNotesPlugin() {
    void* handle = scribotest::LoadBundle(scribotest::BuildDir() / "CountNotes.bundle");
    main = scribotest::Symbol<short (*)(int, void*)>(handle, "main");
    init = scribotest::Symbol<int (*)(void*, uint32_t*)>(handle, "ScriboExtensionInit");
    enumerate = scribotest::Symbol<int (*)(void*, short, MenuRecord*)>(
        handle, "ScriboExtensionEnumerate_UTF16");
    invoke = scribotest::Symbol<int (*)(void*, short, EREGION*)>(handle, "ScriboExtensionInvoke");
  }
};

} // namespace

TEST(TemplatePlugin, LoadsListsItsMenuAndReportsTheSelectionsNotes) {
  Engine& engine = Engine::Instance();
  engine.Reset();
  engine.SetAlertEcho(false);
  Document& doc = engine.document();
  int16_t violin = doc.AddStaff(u"^font(Times)Violin");
  doc.AddStaff(u"Cello");
  int16_t m1 = doc.AddMeasure();
  doc.AddMeasure();
  EntrySpec note{.duration = 1024, .notes = {NoteSpec{.step = 4}}};
  EntrySpec chord{.duration = 1024,
                  .notes = {NoteSpec{.step = 0}, NoteSpec{.step = 2}, NoteSpec{.step = 4}}};
  EntrySpec rest{.duration = 1024};
  for (const EntrySpec* spec : {&note, &chord, &rest, &note})
    doc.AddEntry({violin, m1, 0}, *spec);
  doc.AddEntry({violin, 2, 1}, note);      // second measure, second layer
  doc.AddEntry({int16_t(2), m1, 0}, note); // outside the selected staves

  CountNotesPlugin plugin;
  int token = 1;
  ASSERT_EQ(plugin.main(1, &token), 1);
  uint32_t reserved = 7;
  ASSERT_EQ(plugin.init(nullptr, &reserved), 1);
  EXPECT_EQ(reserved, 0u);
  MenuRecord menu{};
  ASSERT_EQ(plugin.enumerate(nullptr, 0, &menu), 1);
  EXPECT_EQ(std::u16string(menu.texts[0]), u"Count Selected Notes");
  EXPECT_EQ(menu.one, 1u);
  EXPECT_EQ(plugin.enumerate(nullptr, 1, &menu), 0);

  EREGION region{};
  region.startStaff = region.endStaff = violin;
  region.startMeasure = m1;
  region.endMeasure = 2;
  region.endPosition = 0x7FFFFFFF;
  EXPECT_EQ(plugin.invoke(nullptr, 0, &region), 0) << "counting changes nothing";
  ASSERT_EQ(engine.Alerts().size(), 1u);
  EXPECT_EQ(engine.Alerts().back().kind, 0);
  EXPECT_EQ(engine.Alerts().back().resolved,
            "The selection holds 4 notes, starting on staff \"Violin\".");
  EXPECT_EQ(engine.LoadedFrames(), 0) << "every frame the plug-in loaded is freed";
}
