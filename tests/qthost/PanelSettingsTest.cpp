#include <gmock/gmock.h>

#include <QHeaderView>
#include <QTemporaryDir>

#include "PanelStage.h"

namespace qthosttest {
namespace {

class SettingsOfAPanel : public testing::Test {
protected:
  [[nodiscard]] int GetWidth(int column) const { return stage.GetView().header()->sectionSize(column); }

  QTemporaryDir folder;
  QSettings settings{folder.filePath("settings.ini"), QSettings::IniFormat};
  PanelStage stage{"root[plate[bolt nut] rod]"};
};

TEST_F(SettingsOfAPanel, RestoredBeforeTheFirstRows_FilterThem)
{
  settings.setValue("text", "nut");
  settings.setValue("siblings", true);

  stage.panel.RestoreSettings(settings);
  stage.Open();
  stage.WaitForFilter();

  EXPECT_EQ(stage.GetText(), "root[plate[bolt nut]]");
  EXPECT_EQ(stage.GetLine().text(), "nut");
  EXPECT_TRUE(stage.FindAction("filterMenu", "Show siblings").isChecked());
}

TEST_F(SettingsOfAPanel, Saved_ComeBackInAnotherPanel)
{
  stage.Open();
  stage.Type("nut");
  stage.Choose("Match case");
  stage.WaitForFilter();
  stage.GetView().header()->resizeSection(0, 123);
  stage.panel.SaveSettings(settings);
  qthost::GuiTreeItemModel model;
  qthost::GuiTreePanel other(model);

  other.RestoreSettings(settings);

  EXPECT_EQ(other.GetFilter(), stage.panel.GetFilter());
  EXPECT_EQ(other.GetView().header()->sectionSize(0), 123);
}

TEST_F(SettingsOfAPanel, WidthOfAColumnThatComesLater_IsKeptForIt)
{
  stage.Open();
  settings.setValue("widths", QStringList{"150", "60", "77"});

  stage.panel.RestoreSettings(settings);
  stage.model.SetPropertyColumns({{du::Symbol::EMPTY, "Layer"}});

  EXPECT_EQ(GetWidth(0), 150);
  EXPECT_EQ(GetWidth(2), 77);
}

TEST_F(SettingsOfAPanel, DamagedWidths_LeaveTheColumnsToShareTheRoom)
{
  stage.Open();
  const int before = GetWidth(0);

  for (const QStringList& widths : {QStringList{"150", "wide"}, {"-5", "60"}, {"150", "99999999"}}) {
    settings.setValue("widths", widths);
    stage.panel.RestoreSettings(settings);
    EXPECT_EQ(GetWidth(0), before);
  }
}

TEST_F(SettingsOfAPanel, NoWidths_NamesTakeTheRoomThatIsLeft)
{
  stage.Open();

  stage.panel.resize(700, 400);
  QCoreApplication::processEvents();

  EXPECT_EQ(stage.GetView().header()->length(), stage.GetView().viewport()->width());
}

TEST_F(SettingsOfAPanel, DamagedFilter_FallsBackToItsDefaults)
{
  stage.Open();
  settings.setValue("match_case", "perhaps");
  settings.setValue("visibility", 17);
  settings.setValue("columns", QStringList{"Instance"});
  settings.setValue("sort", QByteArray("\0\xff", 2));

  stage.panel.RestoreSettings(settings);
  stage.WaitForFilter();

  EXPECT_EQ(stage.panel.GetFilter(), qthost::FilterSettings());
  EXPECT_EQ(stage.GetText(), "root[plate[bolt nut] rod]");
}

}  // namespace
}  // namespace qthosttest
