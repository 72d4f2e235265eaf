// Imported shapes behind a structure panel: it asks for them, and they end, are cancelled, or outlive who has asked.

#include <gmock/gmock.h>

#include <algorithm>
#include <optional>
#include <shared_mutex>
#include <string>
#include <vector>

#include "guitree/GuiTree.h"
#include "guitree/SceneInfoLog.h"
#include "guitree/StructureTreeState.h"
#include "stepimport/Scene.h"
#include "support/LoadStage.h"
#include "support/StepWriter.h"
#include "support/TempFolder.h"
#include "testsupport/RecordingHost.h"

namespace {

using stepimporttest::LoadStage;
using stepimporttest::StepWriter;
using stepimporttest::TempFolder;

/// A panel that shows all parts of a file in one scene. No load begins before `Start`.
class ShapeLoadPanel : public LoadStage {
protected:
  ShapeLoadPanel()
  {
    world->InstallForProcess();
    gui->SetGuiInterface(&m_host);
    gui->SetTreeState(state);
    gui->Initialise(world);
  }
  ~ShapeLoadPanel() override
  {
    if (gui) {
      ClosePanel();
    }
  }

  void SetUp() override
  {
    StepWriter writer;
    const auto pump = writer.AddProduct("pump");
    const auto torn = writer.AddProduct("torn");
    writer.AddDamagedSolid(torn);
    AddPart(writer, pump, "plate", {"0.,1."});
    AddPart(writer, pump, "worn", {"0.,1.", "2.,0."});
    AddPart(writer, pump, "flat", {"2.,0."});
    writer.AddOccurrence(pump, torn, "torn");
    for (int i = 0; i < 30; ++i) {
      AddPart(writer, pump, "part" + std::to_string(i), {"0.,1."});
    }
    Read(m_folder.Write("pump.stp", writer.GetText()));
    opened = stepimport::OpenScene(*world);
    GetReports().OnSceneAdded(opened.scene);
    GetReports().OnActiveViewChanged(opened.view);
    static_cast<void>(m_host.TakeCalls());
  }
  static void AddPart(StepWriter& writer, StepWriter::Definition assembly, const std::string& name,
                      const std::vector<std::string>& corners)
  {
    const auto part = writer.AddProduct(name);
    writer.AddSurface(part, writer.MakeTriangles(corners));
    writer.AddOccurrence(assembly, part, name);
  }

  void Start() { m_pause.reset(); }
  /// Until all loads but that of the last part have ended: it is at work, and waits.
  void RunHalf()
  {
    const auto& products = read.assembly.products;
    const auto last =
        std::find_if(products.begin(), products.end(), [](const auto& product) { return product.name == "part29"; });
    m_hold = read.shapes->HoldShapes(static_cast<stepimport::ProductIndex>(last - products.begin()));
    Start();
    world->GetLoop().RunUntil([this] { return world->GetMemLoader().GetLoadCount() == 1; });
    EXPECT_THAT(TakeDeliveries(), testing::IsEmpty());
  }
  void LetGo() { m_hold.unlock(); }
  /// Runs the loop until the kernel has no load left, and everything that comes of it.
  void RunOut()
  {
    world->GetLoop().RunUntil([this] { return world->GetMemLoader().GetLoadCount() == 0; });
    while (world->GetLoop().RunDue() != 0) {}
  }
  void ClosePanel()
  {
    gui->OnSceneRemoved(opened.scene);
    gui->Reset();
    gui->Close();
    gui.Reset();
  }
  [[nodiscard]] guitree::GuiInterface::SceneManagerObserver& GetReports() const
  {
    return *m_host.answers.sceneManagerObserver;
  }
  [[nodiscard]] std::vector<std::string> TakeDeliveries()
  {
    std::vector<std::string> calls = m_host.TakeCalls();
    std::erase_if(calls, [](const std::string& call) { return !call.starts_with("UpdateVisAndTypeIconChanges"); });
    return calls;
  }
  [[nodiscard]] du::SmartPtr<memkernel::Instance> FindInstance(const std::string& name) const
  {
    du::SmartPtr<zelk::BaseInstance> child;
    for (read.instance->GetBaseFirstChild(child); child; child->GetBaseNextSibling(child)) {
      if (std::string(child->GetObjectName()) == name) {
        return du::DynamicCast<memkernel::Instance>(child);
      }
    }
    ADD_FAILURE() << name;
    return {};
  }
  [[nodiscard]] guitree::VisibleState GetState(const std::string& name) const
  {
    return gui->GetLog(opened.scene)->GetCompVisibleState(FindInstance(name));
  }
  [[nodiscard]] int GetIcon(const std::string& name) const
  {
    return gui->GetLog(opened.scene)->GetUnloadedTypeIcon(FindInstance(name).Get());
  }

  TempFolder m_folder;
  testsupport::RecordingHost m_host;
  std::optional<memkernel::ParallelTaskPause> m_pause{std::in_place, world->GetMemTaskPool()};
  std::shared_lock<std::shared_mutex> m_hold;
  stepimport::OpenedScene opened;
  du::SmartPtr<guitree::GuiTree> gui = du::MakeSmart<guitree::GuiTree>(world->CreateManagedObject());
  du::SmartPtr<guitree::StructureTreeState> state = du::MakeSmart<guitree::StructureTreeState>(*gui, false);
};

constexpr int s_iconPlain = 0;
constexpr int s_iconShapeFailed = 28;

TEST_F(ShapeLoadPanel, BeforeTheLoads_ShowsOnlyWhatIsKnownToBeDamaged)
{
  EXPECT_EQ(GetState("plate"), guitree::VisibleStateHidden);
  EXPECT_EQ(GetIcon("plate"), s_iconPlain);
  EXPECT_EQ(GetIcon("flat"), s_iconPlain);
  EXPECT_EQ(GetIcon("torn"), s_iconShapeFailed);
  EXPECT_EQ(world->GetMemLoader().GetLoadCount(), 33U);
}

TEST_F(ShapeLoadPanel, Loads_ReachTheHostInOneCallAndShowWhatHasFailed)
{
  Start();
  RunOut();

  EXPECT_THAT(TakeDeliveries(), testing::SizeIs(1));
  EXPECT_EQ(GetState("plate"), guitree::VisibleStateVisible);
  EXPECT_EQ(GetState("part29"), guitree::VisibleStateVisible);
  EXPECT_EQ(GetState("worn"), guitree::VisibleStateVisible);
  EXPECT_EQ(GetIcon("worn"), s_iconPlain);
  EXPECT_EQ(GetState("flat"), guitree::VisibleStateHidden);
  EXPECT_EQ(GetIcon("flat"), s_iconShapeFailed);
  EXPECT_EQ(GetIcon("torn"), s_iconShapeFailed);
}

TEST_F(ShapeLoadPanel, SecondScene_NeedsNoLoads)
{
  Start();
  RunOut();
  const auto scene = world->CreateShapeScene();
  stepimport::AddToScene(*scene, FindInstance("plate"));

  GetReports().OnSceneAdded(scene);

  EXPECT_EQ(world->GetMemLoader().GetLoadCount(), 0U);
  EXPECT_EQ(gui->GetLog(scene)->GetCompVisibleState(FindInstance("plate")), guitree::VisibleStateVisible);
  GetReports().OnSceneRemoved(scene);
}

TEST_F(ShapeLoadPanel, InstanceRemovedHalfWay_LeavesTheOthersToEnd)
{
  RunHalf();

  ASSERT_TRUE(world->GetMemTree().Remove(FindInstance("part29")));
  static_cast<void>(m_host.TakeCalls());
  RunOut();

  EXPECT_THAT(TakeDeliveries(), testing::SizeIs(1));
  EXPECT_EQ(GetState("part28"), guitree::VisibleStateVisible);
}

TEST_F(ShapeLoadPanel, BranchRemovedHalfWay_EndsTheLoadsAtWork)
{
  RunHalf();
  const auto shape = FindInstance("part29")->GetProduct()->GetShape();

  ASSERT_TRUE(world->GetMemTree().Remove(read.instance));
  RunOut();

  EXPECT_EQ(opened.scene->GetShapeInstanceCount(), 0U);
  EXPECT_EQ(shape->GetDataStatus(), zelk::ShapeDataNone);
}

TEST_F(ShapeLoadPanel, SceneRemovedHalfWay_LeavesTheRestUnloaded)
{
  RunHalf();

  GetReports().OnSceneRemoved(opened.scene);
  static_cast<void>(m_host.TakeCalls());
  RunOut();

  EXPECT_THAT(TakeDeliveries(), testing::IsEmpty());
  EXPECT_EQ(FindInstance("part27")->GetProduct()->GetShape()->GetDataStatus(), zelk::ShapeDataLoaded);
  EXPECT_EQ(FindInstance("part29")->GetProduct()->GetShape()->GetDataStatus(), zelk::ShapeDataNone);
}

TEST_F(ShapeLoadPanel, StateGoneHalfWay_LetsTheLoadsEndForNobody)
{
  RunHalf();
  state->DeregisterTreeObserver();

  gui->SetTreeState(nullptr);
  state.Reset();
  LetGo();
  RunOut();

  EXPECT_THAT(TakeDeliveries(), testing::IsEmpty());
  EXPECT_EQ(FindInstance("part29")->GetProduct()->GetShape()->GetDataStatus(), zelk::ShapeDataLoaded);
}

TEST_F(ShapeLoadPanel, PanelGoneHalfWay_IsToldNothing)
{
  RunHalf();
  ClosePanel();
  state.Reset();
  static_cast<void>(m_host.TakeCalls());

  RunOut();

  EXPECT_THAT(m_host.TakeCalls(), testing::IsEmpty());
}

TEST_F(ShapeLoadPanel, WorldThatEndsHalfWay_CancelsTheRestAndEndsTheWave)
{
  RunHalf();

  world->Shutdown();

  EXPECT_THAT(TakeDeliveries(), testing::SizeIs(1));
  EXPECT_EQ(GetState("part27"), guitree::VisibleStateVisible);
  EXPECT_EQ(GetState("part29"), guitree::VisibleStateHidden);
  EXPECT_EQ(FindInstance("part29")->GetProduct()->GetShape()->GetDataStatus(), zelk::ShapeDataNone);
}

}  // namespace
