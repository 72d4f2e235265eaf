#include "memkernel/Preferences.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

#include "dp/ZelTracer.h"
#include "du/SmartPtr.h"

namespace memkerneltest {
namespace {

using memkernel::Preferences;

class PreferencesTest : public testing::Test {
protected:
  ~PreferencesTest() override { std::filesystem::remove(path); }

  const du::SmartPtr<Preferences> preferences = du::MakeSmart<Preferences>();
  const std::string path =
      (std::filesystem::path(testing::TempDir())
       / (std::string("guitree-") + testing::UnitTest::GetInstance()->current_test_info()->name() + ".preferences"))
          .string();
};

TEST_F(PreferencesTest, Get_OfAKeyThatIsNotStored_LeavesTheDefault)
{
  bool value = true;
  bool found = true;

  EXPECT_FALSE(preferences->GetBool("Model Viewer/show_3d_thumbnails", value, &found));

  EXPECT_TRUE(value);
  EXPECT_FALSE(found);
}

TEST_F(PreferencesTest, Get_GivesWhatWasSetLast)
{
  preferences->SetBool("switch", true);
  preferences->SetInt("number", -3);
  preferences->SetString("text", "first");
  preferences->SetString("text", "second");
  bool isOn = false;
  int number = 0;
  std::string text;

  EXPECT_TRUE(preferences->GetBool("switch", isOn, nullptr));
  EXPECT_TRUE(preferences->GetInt("number", number, nullptr));
  EXPECT_TRUE(preferences->GetString("text", text, nullptr));

  EXPECT_TRUE(isOn);
  EXPECT_EQ(number, -3);
  EXPECT_EQ(text, "second");
}

TEST_F(PreferencesTest, Get_OfAnotherType_FindsTheKeyAndLeavesTheDefault)
{
  preferences->SetString("key", "true");
  bool value = false;
  bool found = false;

  EXPECT_FALSE(preferences->GetBool("key", value, &found));

  EXPECT_FALSE(value);
  EXPECT_TRUE(found);
}

TEST_F(PreferencesTest, Remove_ForgetsAKey)
{
  preferences->SetInt("key", 1);
  int value = 0;

  EXPECT_TRUE(preferences->Remove("key"));
  EXPECT_FALSE(preferences->Remove("key"));
  EXPECT_FALSE(preferences->GetInt("key", value, nullptr));
}

TEST_F(PreferencesTest, Load_GivesBackWhatWasSaved)
{
  const std::string odd = "a=b\\c\nd = äöü";
  preferences->SetBool("Model Viewer/show_3d_thumbnails", true);
  preferences->SetInt("equals = and \\ back", -42);
  preferences->SetString("text", odd);
  preferences->SetString("nothing", "");
  ASSERT_TRUE(preferences->Save(path));
  const auto loaded = du::MakeSmart<Preferences>();

  ASSERT_TRUE(loaded->Load(path));

  bool isOn = false;
  int number = 0;
  std::string text;
  std::string nothing = "something";
  EXPECT_TRUE(loaded->GetBool("Model Viewer/show_3d_thumbnails", isOn, nullptr));
  EXPECT_TRUE(loaded->GetInt("equals = and \\ back", number, nullptr));
  EXPECT_TRUE(loaded->GetString("text", text, nullptr));
  EXPECT_TRUE(loaded->GetString("nothing", nothing, nullptr));
  EXPECT_TRUE(isOn);
  EXPECT_EQ(number, -42);
  EXPECT_EQ(text, odd);
  EXPECT_EQ(nothing, "");
}

TEST_F(PreferencesTest, Load_PassesOverWhatItDoesNotUnderstandWithATrace)
{
  std::ofstream(path) << "bool good=true\n\nbool bad=maybe\nint bad=1x\nnonsense\nstring bad=\\\nint other=7";
  std::vector<std::string> traced;
  dp::ZelTracer::SetSink([&](const dp::TraceLine& line) { traced.emplace_back(line.text); });

  EXPECT_TRUE(preferences->Load(path));
  dp::ZelTracer::SetSink({});

  bool isGood = false;
  int number = 0;
  bool found = true;
  EXPECT_TRUE(preferences->GetBool("good", isGood, nullptr));
  EXPECT_TRUE(preferences->GetInt("other", number, nullptr));
  EXPECT_EQ(number, 7);
  EXPECT_FALSE(preferences->GetInt("bad", number, &found));
  EXPECT_FALSE(found);
  EXPECT_EQ(traced.size(), 4U);
}

TEST_F(PreferencesTest, Load_OfAFileThatIsNotThere_ChangesNothing)
{
  preferences->SetInt("key", 1);

  EXPECT_FALSE(preferences->Load(path + ".missing"));
  EXPECT_FALSE(preferences->Load(testing::TempDir()));

  int value = 0;
  EXPECT_TRUE(preferences->GetInt("key", value, nullptr));
}

TEST_F(PreferencesTest, Save_WhereNothingCanBeWritten_IsFalse)
{
  EXPECT_FALSE(preferences->Save(path + "/below/a/file"));
}

}  // namespace
}  // namespace memkerneltest
