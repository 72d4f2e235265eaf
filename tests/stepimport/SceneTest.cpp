#include "stepimport/Scene.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "stepimport/Import.h"
#include "support/StepWriter.h"
#include "support/TempFolder.h"
#include "zelk/ShapeSceneObserver.h"

namespace {

using stepimport::AddToScene;
using stepimport::Import;
using stepimport::ImportResult;
using stepimport::OpenedScene;
using stepimport::OpenScene;
using stepimporttest::StepWriter;
using stepimporttest::TempFolder;
using InstancePtr = du::SmartPtr<memkernel::Instance>;

/// Writes down what a scene tells of its shape instances.
class SceneRecorder : public zelk::ShapeSceneObserver {
public:
  std::string text;

  void OnBeginUpdate() override { text += "("; }
  void OnEndUpdate() override { text += " )"; }
  void OnShapeInstanceCreate(const du::SmartPtr<zelk::ShapeInstance>& created) override
  {
    du::SmartPtr<zelk::Instance> instance;
    created->GetInstance(instance);
    text += " " + std::string(instance->GetObjectName()) + (created->IsVisible() ? "" : " hidden");
  }
};

/// A small assembly: a part, a part of which nothing could be made, an empty part, and a sub-assembly of two parts.
class Scene : public testing::Test {
protected:
  void SetUp() override
  {
    StepWriter writer;
    const auto pump = writer.AddProduct("pump");
    const auto bolt = writer.AddProduct("bolt");
    const auto torn = writer.AddProduct("torn");
    const auto empty = writer.AddProduct("empty");
    const auto valve = writer.AddProduct("valve");
    writer.AddEdge(bolt);
    writer.AddDamagedSolid(torn);
    writer.AddOccurrence(pump, bolt, "bolt:1");
    writer.AddOccurrence(pump, torn, "torn:1");
    writer.AddOccurrence(pump, empty, "empty:1");
    writer.AddOccurrence(pump, valve, "valve:1");
    writer.AddOccurrence(valve, bolt, "bolt:2");
    writer.AddOccurrence(valve, bolt, "bolt:3");
    m_file = m_folder.Write("pump.stp", writer.GetText());
  }
  void TearDown() override { m_world->Shutdown(); }

  void ReadFile(const InstancePtr& parent = {}) { m_read = Import(m_file, m_world->GetMemTree(), parent, nullptr); }

  /// By the way of names from the root; null where it leads nowhere.
  [[nodiscard]] InstancePtr Find(const std::vector<std::string>& path) const
  {
    du::SmartPtr<zelk::BaseInstance> instance = m_read.instance;
    for (const std::string& name : path) {
      instance->GetBaseFirstChild(instance);
      while (instance && std::string(instance->GetObjectName()) != name) {
        instance->GetBaseNextSibling(instance);
      }
      if (!instance) {
        return {};
      }
    }
    return du::DynamicCast<memkernel::Instance>(instance);
  }

  [[nodiscard]] static unsigned short GetStatus(const OpenedScene& opened, const InstancePtr& instance)
  {
    const auto found = opened.scene->FindShapeInstance(instance.Get());
    return found ? found->GetShapeDataStatus(1) : s_none;
  }

  static constexpr unsigned short s_none = 99;
  const du::SmartPtr<memkernel::World> m_world = du::MakeSmart<memkernel::World>(1U);
  TempFolder m_folder;
  std::filesystem::path m_file;
  ImportResult m_read;
};

TEST_F(Scene, Import_GivesShapesThatAreToBeLoadedToWhatHasGeometry)
{
  ReadFile();

  ASSERT_TRUE(m_read.ok) << m_read.error;
  const auto bolt = Find({"bolt:1"})->GetProduct()->GetShape();
  ASSERT_TRUE(bolt);
  EXPECT_EQ(bolt->GetDataStatus(), zelk::ShapeDataNone);
  EXPECT_FALSE(bolt->IsFromTrask());
  EXPECT_EQ(Find({"valve:1", "bolt:2"})->GetProduct()->GetShape(), bolt);
  EXPECT_FALSE(Find({"empty:1"})->GetProduct()->GetShape());
  EXPECT_FALSE(Find({"empty:1"})->HasShapeSource());
  EXPECT_FALSE(m_read.instance->HasShapeSource());
}

TEST_F(Scene, Import_OfGeometryThatCannotBeRead_MarksItsShapeAsFailedAndWarns)
{
  ReadFile();

  ASSERT_TRUE(m_read.ok) << m_read.error;
  const InstancePtr torn = Find({"torn:1"});
  EXPECT_TRUE(torn->HasShapeSource());
  ASSERT_TRUE(torn->GetProduct()->GetShape());
  EXPECT_EQ(torn->GetProduct()->GetShape()->GetDataStatus(), zelk::ShapeDataFailed);
  EXPECT_EQ(m_read.warnings,
            std::vector<std::string>{m_file.string() + ": nothing could be made of the geometry of 'torn'"});
}

TEST_F(Scene, Import_OfBodies_GivesEachAShapeOfItsOwn)
{
  m_file = std::filesystem::path(SAMPLES_DIR) / "nested-assembly.stp";
  ReadFile();

  ASSERT_TRUE(m_read.ok) << m_read.error;
  const auto part = Find({"valve block:1"})->GetProduct()->GetShape();
  const auto body = Find({"valve block:1", "core"})->GetProduct()->GetShape();
  ASSERT_TRUE(part);
  ASSERT_TRUE(body);
  EXPECT_NE(part, body);
  EXPECT_EQ(body->GetDataStatus(), zelk::ShapeDataNone);
}

TEST_F(Scene, OpenScene_ShowsAllThatHasAShapeSource)
{
  ReadFile();

  const OpenedScene opened = OpenScene(*m_world);

  EXPECT_EQ(opened.scene->GetShapeInstanceCount(), 4U);
  EXPECT_EQ(GetStatus(opened, Find({"bolt:1"})), zelk::ShapeDataNone);
  EXPECT_EQ(GetStatus(opened, Find({"torn:1"})), zelk::ShapeDataFailed);
  EXPECT_EQ(GetStatus(opened, Find({"valve:1", "bolt:2"})), zelk::ShapeDataNone);
  EXPECT_EQ(GetStatus(opened, Find({"valve:1", "bolt:3"})), zelk::ShapeDataNone);
  EXPECT_EQ(GetStatus(opened, Find({"empty:1"})), s_none);
  EXPECT_EQ(GetStatus(opened, Find({"valve:1"})), s_none);
  EXPECT_EQ(GetStatus(opened, m_read.instance), s_none);
}

TEST_F(Scene, OpenScene_GivesAViewOfTheSceneAndSharesTheSelectionOfTheWorld)
{
  ReadFile();

  const OpenedScene opened = OpenScene(*m_world);

  du::SmartPtr<zelk::Scene> viewed;
  opened.view->GetScene(viewed);
  EXPECT_EQ(viewed.Get(), opened.scene.Get());
  du::SmartPtr<zelk::SelectionManager> manager;
  opened.scene->GetSelectionManager(manager);
  EXPECT_EQ(manager.Get(), &m_world->GetMemSelectionManager());
}

TEST_F(Scene, OpenScene_OfAnEmptyTree_GivesAnEmptyScene)
{
  const OpenedScene opened = OpenScene(*m_world);

  ASSERT_TRUE(opened.scene);
  ASSERT_TRUE(opened.view);
  EXPECT_EQ(opened.scene->GetShapeInstanceCount(), 0U);
}

TEST_F(Scene, AddToScene_OfALaterBranch_ShowsItInTheOrderOfTheTreeAndInOneBatch)
{
  memkernel::Tree& tree = m_world->GetMemTree();
  const auto all = tree.CreateRoot(tree.CreateProduct({.name = du::Symbol("all")}));
  const OpenedScene opened = OpenScene(*m_world);
  const auto recorder = du::MakeSmart<SceneRecorder>();
  opened.scene->RegisterObserver(*recorder, du::Flags(memkernel::ShapeSceneExistence), false);
  ReadFile(all);
  recorder->text.clear();

  const std::size_t count = AddToScene(*opened.scene, m_read.instance);

  EXPECT_EQ(count, 4U);
  EXPECT_EQ(recorder->text, "( bolt:1 torn:1 bolt:2 bolt:3 )");
  opened.scene->UnregisterObserver(*recorder);
}

TEST_F(Scene, AddToScene_OfABranch_LeavesItsSiblingsAlone)
{
  ReadFile();
  const auto scene = m_world->CreateShapeScene();

  EXPECT_EQ(AddToScene(*scene, Find({"valve:1"})), 2U);

  EXPECT_TRUE(scene->FindShapeInstance(Find({"valve:1", "bolt:2"}).Get()));
  EXPECT_FALSE(scene->FindShapeInstance(Find({"bolt:1"}).Get()));
}

TEST_F(Scene, AddToScene_Again_KeepsWhatIsHidden)
{
  ReadFile();
  const OpenedScene opened = OpenScene(*m_world);
  const auto bolt = opened.scene->FindShapeInstance(Find({"bolt:1"}).Get());
  opened.scene->SetVisible(bolt, false);

  EXPECT_EQ(AddToScene(*opened.scene, m_read.instance), 0U);

  EXPECT_FALSE(bolt->IsVisible());
  EXPECT_EQ(opened.scene->GetShapeInstanceCount(), 4U);
}

TEST_F(Scene, AddToScene_OfNothingOrOfWhatHasLeftTheTree_AddsNothing)
{
  ReadFile();
  const OpenedScene opened = OpenScene(*m_world);
  const InstancePtr valve = Find({"valve:1"});
  ASSERT_TRUE(m_world->GetMemTree().Remove(valve));

  EXPECT_EQ(AddToScene(*opened.scene, {}), 0U);
  EXPECT_EQ(AddToScene(*opened.scene, valve), 0U);
  EXPECT_EQ(opened.scene->GetShapeInstanceCount(), 2U);
}

}  // namespace
