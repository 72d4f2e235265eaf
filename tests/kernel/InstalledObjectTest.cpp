#include "du/InstalledObject.h"

#include <gtest/gtest.h>

#include "zelk/World.h"
#include "zelloader/Loader.h"

namespace {

class FakeWorld : public zelk::World {
public:
  du::TaskPool* GetTaskPool() const override { return nullptr; }
  du::SmartPtr<zelk::ProgressController> GetProgressController() override { return {}; }
  du::SmartPtr<zelk::Preferences> GetPreferences() override { return {}; }
};

class FakeLoader : public zelloader::Loader {
public:
  bool LoadShape(const du::SmartPtr<zelk::Shape>& /*shape*/, du::Flags /*what*/, zelloader::ShapeLoaderEvent* event,
                 zelk::Anchor* /*anchor*/) override
  {
    event->Complete();
    return false;
  }
};

TEST(World, BeforeAnyIsInstalled_IsNull)
{
  EXPECT_FALSE(zelk::World::GetWorld());
}

TEST(World, ThatIsInstalled_IsAnsweredAndHeldUntilItIsRemoved)
{
  const auto world = du::MakeSmart<FakeWorld>();

  zelk::World::Install(world);
  EXPECT_TRUE(zelk::World::GetWorld() == world);
  EXPECT_EQ(world->AddReference(nullptr), 3);
  world->RemoveReference(nullptr);

  zelk::World::Install(nullptr);
  EXPECT_FALSE(zelk::World::GetWorld());
  EXPECT_EQ(world->AddReference(nullptr), 2);
  world->RemoveReference(nullptr);
}

TEST(World, Install_ReplacesTheFormerWorld)
{
  zelk::World::Install(du::MakeSmart<FakeWorld>());
  const auto second = du::MakeSmart<FakeWorld>();

  zelk::World::Install(second);

  EXPECT_TRUE(zelk::World::GetWorld() == second);
  zelk::World::Install(nullptr);
}

TEST(Loader, IsInstalledAndRemovedLikeAWorld)
{
  const auto loader = du::MakeSmart<FakeLoader>();
  EXPECT_FALSE(zelloader::Loader::GetLoader());

  zelloader::Loader::Install(loader);
  EXPECT_TRUE(zelloader::Loader::GetLoader() == loader);

  zelloader::Loader::Install(nullptr);
  EXPECT_FALSE(zelloader::Loader::GetLoader());
}

class Reentrant : public virtual du::RefCounted {
public:
  Reentrant(du::InstalledObject<Reentrant>& place, bool& sawItself) : m_place(place), m_sawItself(sawItself) {}
  Reentrant(const Reentrant&) = delete;
  Reentrant& operator=(const Reentrant&) = delete;
  ~Reentrant() override { m_sawItself = m_place.Get() == this; }

private:
  du::InstalledObject<Reentrant>& m_place;
  bool& m_sawItself;
};

TEST(InstalledObject, WhileTheFormerObjectDies_CanBeAskedAndAnswersTheNewOne)
{
  du::InstalledObject<Reentrant> place;
  bool sawItself = true;
  place.Set(du::MakeSmart<Reentrant>(place, sawItself));

  place.Set(nullptr);

  EXPECT_FALSE(sawItself);
}

}  // namespace
