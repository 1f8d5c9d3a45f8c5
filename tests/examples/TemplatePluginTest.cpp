// The template plug-in, loaded and invoked by the reference engine the way a host does.
#include "CommandTestHost.h"

using namespace commandtest;

namespace {

TEST_F(HostTest, TemplatePluginListsItsMenuAndReportsTheSelectionsNotes) {
  const int16_t violin = doc().AddStaff(u"^font(Times)Violin");
  doc().AddStaff(u"Cello");
  Build(0, 2);
  const EntrySpec note{.duration = 1024, .notes = {NoteSpec{.step = 4}}};
  const EntrySpec chord{.duration = 1024,
                        .notes = {NoteSpec{.step = 0}, NoteSpec{.step = 2}, NoteSpec{.step = 4}}};
  for (const EntrySpec& spec : {note, chord, Rest(1024, -1), note})
    Add(violin, 1, spec);
  Add(violin, 2, note, 1); // second measure, second layer
  Add(2, 1, note);         // outside the selected staves

  const Plugin plugin = Bind(LoadAndStart(scribotest::BuildDir() / "CountNotes.bundle"));
  uint32_t reserved = 7;
  ASSERT_EQ(plugin.init(nullptr, &reserved), 1);
  EXPECT_EQ(reserved, 0u);
  tExtensionMenuRecord menu{};
  ASSERT_EQ(plugin.enumerate(nullptr, 0, &menu), 1);
  std::u16string text;
  for (int i = 0; menu.text1[i] != 0; ++i)
    text += char16_t(menu.text1[i]);
  EXPECT_EQ(text, u"Count Selected Notes");
  EXPECT_EQ(plugin.enumerate(nullptr, 1, &menu), 0);

  EREGION region = Measures(violin, violin, 1, 2);
  EXPECT_EQ(plugin.invoke(nullptr, 0, &region), 0) << "counting changes nothing";
  ASSERT_EQ(engine().Alerts().size(), 1u);
  EXPECT_EQ(engine().Alerts().back().kind, 0);
  EXPECT_EQ(engine().Alerts().back().resolved,
            "The selection holds 4 notes, starting on staff \"Violin\".");
}

} // namespace
