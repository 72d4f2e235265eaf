#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "TextOf.h"
#include "guitree/GuiTree.h"
#include "hostcheck/ProtocolChecker.h"
#include "memkernel/World.h"
#include "testsupport/ScriptedWorldTreeState.h"

namespace {

using InstancePtr = du::SmartPtr<memkernel::Instance>;

/// What the product is called whose instances have no row.
constexpr const char* s_hiddenProduct = "group";

/// Icons that depend on the instance alone. One that depends on the scene has a loaded form that depends on when the
/// scene came, before its view or after.
class IconState : public testsupport::ScriptedWorldTreeState {
public:
  using ScriptedWorldTreeState::ScriptedWorldTreeState;

  [[nodiscard]] int GetUnloadedTypeIcon(const zelk::BaseInstance* base,
                                        const du::SmartPtr<zelk::Scene>& /*scene*/) override
  {
    const auto* instance = dynamic_cast<const zelk::Instance*>(base);
    return instance && instance->HasShapeSource() ? 0 : 2;
  }
  [[nodiscard]] bool IsInstHidden(zelk::BaseInstance* base) const override
  {
    const auto* instance = dynamic_cast<const memkernel::Instance*>(base);
    return instance && instance->GetProduct()->GetName() == s_hiddenProduct;
  }
};

/// A panel of a text host on the world, with its calls checked.
class TextPanel {
public:
  TextPanel(const du::SmartPtr<memkernel::World>& world, const du::SmartPtr<memkernel::ShapeScene>& scene,
            const du::SmartPtr<memkernel::ShapeView>& view)
      : m_gui(du::MakeSmart<guitree::GuiTree>(world->CreateManagedObject()))
  {
    m_host.SetPanel(m_gui.Get());
    m_gui->SetGuiInterface(&m_checker);
    m_gui->SetTreeState(du::MakeSmart<IconState>(*m_gui));
    m_gui->Initialise(world);
    m_host.GetSceneManagerObserver()->OnSceneAdded(scene);
    m_host.GetSceneManagerObserver()->OnActiveViewChanged(view);
  }
  ~TextPanel()
  {
    m_gui->Reset();
    m_gui->Close();
  }
  TextPanel(const TextPanel&) = delete;
  TextPanel& operator=(const TextPanel&) = delete;

  [[nodiscard]] std::string GetText() const { return hosttest::TextOf(m_host, {.ascii = true, .states = true}); }
  [[nodiscard]] const std::vector<std::string>& GetViolations() const { return m_checker.GetViolations(); }

private:
  texthost::TextHost m_host;
  hostcheck::ProtocolChecker m_checker{&m_host};
  du::SmartPtr<guitree::GuiTree> m_gui;
};

/// A world with one scene and one view, and any edits of all that a panel shows.
class EditedWorld {
public:
  EditedWorld()
  {
    m_world->InstallForProcess();
    const auto shape = du::MakeSmart<memkernel::Shape>(nullptr, zelk::ShapeDataLoaded);
    m_products = {m_world->GetMemTree().CreateProduct({.name = "assembly"}),
                  m_world->GetMemTree().CreateProduct({.name = "part", .shape = shape}),
                  m_world->GetMemTree().CreateProduct({.name = s_hiddenProduct})};
    m_instances.push_back(m_world->GetMemTree().CreateRoot(m_products.front(), "root"));
    m_scene = m_world->CreateShapeScene(m_world->selectionManager);
    m_view = du::MakeSmart<memkernel::ShapeView>(m_scene);
  }
  ~EditedWorld() { m_world->Shutdown(); }
  EditedWorld(const EditedWorld&) = delete;
  EditedWorld& operator=(const EditedWorld&) = delete;

  [[nodiscard]] std::unique_ptr<TextPanel> OpenPanel() const
  {
    return std::make_unique<TextPanel>(m_world, m_scene, m_view);
  }

  // A removal ends its run: it has the rows refilled, and then the parents of later edits are not looked at any more.
  void DoAny()
  {
    const auto edits = *rc::gen::inRange(0, 6);
    const memkernel::TreeBatch treeBatch(m_world->GetMemTree());
    const memkernel::ShapeSceneBatch sceneBatch(*m_scene);
    for (int edit = 0; edit < edits; ++edit) {
      _Edit();
    }
    if (*rc::gen::inRange(0, 4) == 0) {
      _Remove();
    }
  }

private:
  void _Edit()
  {
    switch (*rc::gen::weightedElement<int>({{6, 0}, {3, 1}, {6, 2}, {3, 3}})) {
      case 0:
        return _Add();
      case 1:
        return _Rename();
      case 2:
        return _ShowOrHide();
      default:
        return _Select();
    }
  }
  /// By number: what is drawn may be drawn again for another world.
  template <typename T>
  [[nodiscard]] static const T& _AnyOf(const std::vector<T>& all)
  {
    return all[*rc::gen::arbitrary<std::size_t>() % all.size()];
  }
  [[nodiscard]] InstancePtr _Any() const
  {
    const InstancePtr& instance = _AnyOf(m_instances);
    return instance->IsInTree() ? instance : m_instances.front();
  }
  void _Add()
  {
    const InstancePtr added = _Make(_Any(), _AnyOf(m_products), du::Symbol("n" + std::to_string(m_instances.size())));
    m_instances.push_back(added);
    if (added->HasShapeSource()) {
      m_scene->CreateShapeInstance(added, {.isVisible = *rc::gen::arbitrary<bool>()});
    }
  }
  /// Below `place` or in front of it.
  [[nodiscard]] InstancePtr _Make(const InstancePtr& place, const du::SmartPtr<memkernel::Product>& product,
                                  const du::Symbol& name) const
  {
    memkernel::Tree& tree = m_world->GetMemTree();
    const bool isRoot = place == m_instances.front();
    return isRoot || *rc::gen::arbitrary<bool>() ? tree.AddChild(place, product, name)
                                                 : tree.InsertBefore(place, product, name);
  }
  void _Remove()
  {
    const InstancePtr removed = _Any();
    if (removed != m_instances.front()) {
      m_world->GetMemTree().Remove(removed);
    }
  }
  void _Rename() { m_world->GetMemTree().Rename(_Any(), du::Symbol("r" + std::to_string(*rc::gen::inRange(0, 99)))); }
  void _ShowOrHide() { m_scene->SetVisible(m_scene->FindShapeInstance(_Any().Get()), *rc::gen::arbitrary<bool>()); }
  void _Select()
  {
    const std::vector<du::SmartPtr<zelk::Instance>> instances{_Any(), _Any()};
    const unsigned int list =
        *rc::gen::element<unsigned int>(zelk::SelectionManager::SelectionList, zelk::SelectionManager::AssocHlightList);
    const auto operation =
        *rc::gen::element(zelk::SelectionManager::OperationAdd, zelk::SelectionManager::OperationRemove,
                          zelk::SelectionManager::OperationToggle, zelk::SelectionManager::OperationSet);
    m_world->GetMemSelectionManager().ApplyInstances(list, instances, operation);
  }

  const du::SmartPtr<memkernel::World> m_world = du::MakeSmart<memkernel::World>(1U);
  std::vector<du::SmartPtr<memkernel::Product>> m_products;
  std::vector<InstancePtr> m_instances;
  du::SmartPtr<memkernel::ShapeScene> m_scene;
  du::SmartPtr<memkernel::ShapeView> m_view;
};

RC_GTEST_PROP(TextHostOnAWorld, TextAfterAnyEvents_IsThatOfAFreshPanel, ())
{
  EditedWorld world;
  const auto panel = world.OpenPanel();
  const auto runs = *rc::gen::inRange(1, 30);
  for (int run = 0; run < runs; ++run) {
    world.DoAny();
    RC_ASSERT(panel->GetText() == world.OpenPanel()->GetText());
    RC_ASSERT(panel->GetViolations() == std::vector<std::string>{});
  }
}

}  // namespace
