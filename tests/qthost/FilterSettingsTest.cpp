#include "qthost/FilterSettings.h"

#include <gmock/gmock.h>

#include <QTemporaryDir>

#include "guitree/WorldTreeState.h"
#include "testsupport/DisplaySwitches.h"

namespace qthosttest {
namespace {

using qthost::FilterSettings;

class StoredFilterSettings : public testing::Test {
protected:
  [[nodiscard]] static FilterSettings MakeUnusual()
  {
    FilterSettings settings;
    settings.text = QString::fromUtf8("\"Mutter, größer\" = [1]; %2");
    settings.matchesCase = settings.matchesWholeWords = true;
    settings.searchesName = false;
    settings.columns = {{"Instance", "Layer"}, {"My group", "a/b, c;d"}};
    settings.selectedOnly = settings.issuesOnly = settings.partsOnly = true;
    settings.visibility = FilterSettings::Visibility::Hidden;
    settings.showsSiblings = settings.isList = settings.follows = true;
    settings.sortColumn = {"Instance", "Layer"};
    settings.isAscending = false;
    return settings;
  }
  /// Through a file, as another run of the application reads it.
  [[nodiscard]] FilterSettings SaveAndRestore(const FilterSettings& settings) const
  {
    {
      QSettings file(path, QSettings::IniFormat);
      settings.Save(file);
    }
    const QSettings file(path, QSettings::IniFormat);
    return FilterSettings::Restore(file);
  }

  QTemporaryDir folder;
  const QString path = folder.filePath("settings.ini");
};

TEST_F(StoredFilterSettings, Unusual_ComeBackAsTheyWere)
{
  EXPECT_EQ(SaveAndRestore(MakeUnusual()), MakeUnusual());
}

TEST_F(StoredFilterSettings, Default_ComesBackAsItWas)
{
  EXPECT_EQ(SaveAndRestore(FilterSettings()), FilterSettings());
}

TEST_F(StoredFilterSettings, NothingStored_GivesTheDefault)
{
  const QSettings file(path, QSettings::IniFormat);

  EXPECT_EQ(FilterSettings::Restore(file), FilterSettings());
}

class DamagedFilterSettings : public StoredFilterSettings, public testing::WithParamInterface<const char*> {};

TEST_P(DamagedFilterSettings, ValueThatCannotBe_BecomesItsDefaultAlone)
{
  FilterSettings settings = MakeUnusual();
  static_cast<void>(SaveAndRestore(settings));
  QSettings file(path, QSettings::IniFormat);
  const QString key = QString::fromLatin1(GetParam());
  file.setValue(key, QVariant::fromValue(QStringList{"one", "", "three"}));

  const FilterSettings restored = FilterSettings::Restore(file);

  QSettings other(folder.filePath("other.ini"), QSettings::IniFormat);
  FilterSettings().Save(other);
  file.setValue(key, other.value(key));
  EXPECT_EQ(restored, FilterSettings::Restore(file));
  EXPECT_NE(restored, settings);
}

INSTANTIATE_TEST_SUITE_P(EachKey, DamagedFilterSettings,
                         testing::Values("match_case", "whole_words", "search_name", "selected", "issues", "parts",
                                         "siblings", "list", "follow", "ascending", "text", "visibility", "columns",
                                         "sort"),
                         [](const auto& key) { return std::string(key.param); });

TEST(AppliedFilterSettings, NothingToLookFor_DoesNotFilter)
{
  zelremote::StructureFilterInfo filter("panel");
  FilterSettings settings;
  settings.text = "  ";
  settings.matchesCase = settings.showsSiblings = settings.follows = true;

  settings.ApplyTo(filter);

  EXPECT_FALSE(filter.IsFiltering(true));
  EXPECT_FALSE(settings.HasCriterion());
}

TEST(AppliedFilterSettings, ListOrOrderAlone_LetsEverythingThrough)
{
  zelremote::StructureFilterInfo filter("panel");
  FilterSettings settings;
  settings.isList = true;
  settings.matchesWholeWords = true;
  settings.searchesName = false;

  settings.ApplyTo(filter);

  EXPECT_TRUE(filter.IsFiltering(false));
  EXPECT_EQ(filter.GetText(), "*");
  EXPECT_TRUE(filter.GetSearchName());
  EXPECT_FALSE(filter.GetMatchWholeWord());
  EXPECT_FALSE(settings.HasCriterion());
}

TEST(AppliedFilterSettings, Filter_FollowsTheSwitchesOfTheProcess)
{
  const testsupport::DisplaySwitches switches(true);
  guitree::WorldTreeState::SetIsShowingBodies(false);
  zelremote::StructureFilterInfo filter("panel");

  FilterSettings().ApplyTo(filter);

  EXPECT_TRUE(filter.collapseInstances);
  EXPECT_TRUE(filter.hideBodies);
}

}  // namespace
}  // namespace qthosttest
