#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <utility>

#include "Panel.h"
#include "memkernel/World.h"
#include "script/Stage.h"

/// A world with pump[set[bolt nut] frame], one scene of it and its view, for panels of a test.
class PanelStage {
public:
  /// What a panel without a filter shows.
  static constexpr const char* s_everything =
      "pump\n"
      "|- set\n"
      "|  |- bolt\n"
      "|  `- nut\n"
      "`- frame\n";

  PanelStage()
  {
    m_world->InstallForProcess();
    memkernel::Tree& tree = GetTree();
    const auto shape = du::MakeSmart<memkernel::Shape>(memkernel::Shape::Work(), zelk::ShapeDataLoaded);
    const auto make = [&](const char* name) { return tree.CreateProduct({.name = name, .shape = shape}); };
    pump = tree.CreateRoot(make("pump"));
    set = tree.AddChild(pump, make("set"));
    bolt = tree.AddChild(set, make("bolt"));
    tree.AddChild(set, make("nut"));
    frame = tree.AddChild(pump, make("frame"));
    stage.AddSceneOfAll();
    stage.ActivateView(1);
  }
  ~PanelStage() { m_world->Shutdown(); }
  PanelStage(const PanelStage&) = delete;
  PanelStage& operator=(const PanelStage&) = delete;

  [[nodiscard]] memkernel::Tree& GetTree() const { return m_world->GetMemTree(); }
  [[nodiscard]] const du::SmartPtr<memkernel::World>& GetWorld() const { return m_world; }

  /// A part below the pump, shown in the scene, whose shape is loaded by `work`.
  du::SmartPtr<memkernel::Instance> AddPart(const char* name, memkernel::Shape::Work work)
  {
    const auto shape = du::MakeSmart<memkernel::Shape>(std::move(work));
    const auto part = GetTree().AddChild(pump, GetTree().CreateProduct({.name = name, .shape = shape}));
    EXPECT_TRUE(stage.GetScene(1)->CreateShapeInstance(part));
    return part;
  }

  [[nodiscard]] static std::string TextOf(const Panel& panel)
  {
    std::ostringstream text;
    panel.Print(text);
    return text.str();
  }

private:
  const du::SmartPtr<memkernel::World> m_world = du::MakeSmart<memkernel::World>(1U);

public:
  script::Stage stage{m_world};
  du::SmartPtr<memkernel::Instance> pump;
  du::SmartPtr<memkernel::Instance> set;
  du::SmartPtr<memkernel::Instance> bolt;
  du::SmartPtr<memkernel::Instance> frame;
};
