#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "hostcheck/ProtocolChecker.h"
#include "testsupport/PlainScenes.h"
#include "testsupport/RowsHost.h"
#include "testsupport/WorldPanel.h"

namespace {

using Instance = du::SmartPtr<memkernel::Instance>;
using Rows = std::vector<std::string>;

constexpr int s_most = 200;

/// A panel that follows random edits of its tree, on a host that keeps rows and behind a checker of the protocol.
/// Bodies are hidden.
class FollowingPanel {
public:
  FollowingPanel()
  {
    m_panel.state->hidesBodies = true;
    m_panel.gui->SetGuiInterface(&m_checker);
    m_panel.Initialise();
    _Keep(m_panel.kernel["0"]);
    for (const unsigned int flags : {0U, unsigned{memkernel::InstanceBody}, unsigned{memkernel::InstanceProxy}}) {
      m_products.push_back(GetTree().CreateProduct({.name = "product", .flags = flags}));
    }
  }

  [[nodiscard]] memkernel::Tree& GetTree() const { return m_panel.GetTree(); }
  [[nodiscard]] testsupport::ScriptedHost& GetAnswers() { return m_panel.host.answers; }

  void Add(std::size_t kind)
  {
    const auto parent = _Pick();
    _Keep(parent ? GetTree().AddChild(parent, m_products[kind], _MakeName())
                 : GetTree().CreateRoot(m_products[0], _MakeName()));
  }
  void AddInFront(std::size_t kind)
  {
    if (const auto sibling = _Pick()) {
      _Keep(GetTree().InsertBefore(sibling, m_products[kind], _MakeName()));
    }
  }
  void Remove()
  {
    const auto gone = _Pick();
    // The root goes seldom, since everything goes with it.
    if (gone && (gone != GetTree().GetRootInstance() || *rc::gen::inRange(0, 10) == 0)) {
      GetTree().Remove(gone);
    }
  }
  void Rename() { GetTree().Rename(_Pick(), _MakeName()); }
  void ChangeProxy()
  {
    const auto proxy = _Pick();
    switch (*rc::gen::inRange(0, 4)) {
      case 0:
        GetTree().ExpandProxy(proxy);
        break;
      case 1:
        GetTree().CollapseProxy(proxy);
        break;
      case 2:
        GetTree().FailProxy(proxy);
        break;
      default:
        GetTree().TurnProxyToNode(proxy);
        break;
    }
  }
  void ChangeViewables()
  {
    const auto instance = _Pick();
    const du::SmartPtr<zelk::Object> viewable(*rc::gen::arbitrary<bool>() ? m_viewable.Get() : nullptr);
    if (*rc::gen::arbitrary<bool>()) {
      GetTree().AddViewable(instance, viewable);
    } else {
      GetTree().RemoveViewable(instance, viewable);
    }
  }
  void ChangeAllNames()
  {
    switch (*rc::gen::inRange(0, 3)) {
      case 0:
        GetTree().RenameProduct(m_products[0], _MakeName());
        break;
      case 1:
        GetTree().NotifyTreeColumnsChanged();
        break;
      default:
        GetTree().NotifyPropertyGroupsLoaded();
        break;
    }
  }
  void EditAtRandom()
  {
    const auto kind = *rc::gen::inRange<std::size_t>(0, m_products.size());
    switch (*rc::gen::weightedElement<int>({{10, 0}, {4, 1}, {3, 2}, {4, 3}, {4, 4}, {2, 5}, {1, 6}})) {
      case 0:
        Add(kind);
        break;
      case 1:
        AddInFront(kind);
        break;
      case 2:
        Remove();
        break;
      case 3:
        Rename();
        break;
      case 4:
        ChangeProxy();
        break;
      case 5:
        ChangeViewables();
        break;
      default:
        ChangeAllNames();
        break;
    }
  }
  void SetAnswersAtRandom()
  {
    GetAnswers().checkAndUpdateNodeNameAndType = *rc::gen::inRange(0, 4) == 0;
    GetAnswers().isShowingAltPartNames = *rc::gen::arbitrary<bool>();
    m_panel.state->filter.sortColumn =
        *rc::gen::elementOf(std::vector<du::DualSymbol>{{"", ""}, {"", ""}, {"", "Mass"}, {"", "Display Name"}});
  }

  [[nodiscard]] std::ptrdiff_t CountRefills() const
  {
    const auto& calls = m_panel.host.Calls();
    return std::count(calls.begin(), calls.end(), "ClearTree()");
  }
  void ForgetCalls() { static_cast<void>(m_panel.host.TakeCalls()); }

  /// Fails if the rows are not those of a population, or the calls were against the protocol.
  void Check(bool withOrder)
  {
    testsupport::ScriptedHost silent;
    testsupport::RowsHost fresh(&silent);
    const auto gui = du::MakeSmart<guitree::GuiTree>(nullptr);
    const auto state = du::MakeSmart<testsupport::ScriptedWorldTreeState>(*gui);
    state->hidesBodies = true;
    gui->SetGuiInterface(&fresh);
    gui->SetTreeState(state);
    gui->SetBaseTree(m_panel.kernel.Get());
    state->PopulateTree(false);

    m_checker.CheckAtRest();
    RC_ASSERT(m_checker.GetViolations() == Rows{});
    if (withOrder) {
      RC_ASSERT(m_rows.GetRows() == fresh.GetRows());
    }
    RC_ASSERT(m_rows.GetSortedRows() == fresh.GetSortedRows());
    RC_ASSERT(m_panel.state->GetNotFilteredSet() == state->GetNotFilteredSet());
  }

private:
  [[nodiscard]] du::Symbol _MakeName() { return du::Symbol(std::string_view(std::to_string(++m_names))); }
  void _Keep(const Instance& instance)
  {
    if (instance) {
      m_instances.push_back(instance);
    }
  }
  /// One that is in the tree; null if there is none.
  [[nodiscard]] Instance _Pick()
  {
    std::erase_if(m_instances, [](const Instance& instance) { return !instance->IsInTree(); });
    return m_instances.empty() ? Instance() : m_instances[*rc::gen::inRange<std::size_t>(0, m_instances.size())];
  }

  testsupport::WorldPanel m_panel{"0"};
  testsupport::RowsHost m_rows{&m_panel.host};
  hostcheck::ProtocolChecker m_checker{&m_rows};
  std::vector<du::SmartPtr<memkernel::Product>> m_products;
  std::vector<Instance> m_instances;
  const du::SmartPtr<zelk::Object> m_viewable = testsupport::MakeView<testsupport::PlainView>(nullptr);
  int m_names = 0;
};

/// Few edits, about as many as a burst may have, or more.
[[nodiscard]] int ChooseBatchSize()
{
  return *rc::gen::oneOf(rc::gen::inRange(1, 20), rc::gen::inRange(s_most - 3, s_most + 4), rc::gen::inRange(1, 260));
}

RC_GTEST_PROP(BurstProperty, RowsAfterAnyBatchesOfEdits_AreThoseOfAPopulation, ())
{
  FollowingPanel panel;
  const int batches = *rc::gen::inRange(1, 6);
  for (int batch = 0; batch < batches; ++batch) {
    const int edits = ChooseBatchSize();
    panel.SetAnswersAtRandom();
    {
      const memkernel::TreeBatch scope(panel.GetTree());
      for (int edit = 0; edit < edits; ++edit) {
        panel.EditAtRandom();
      }
    }
    panel.Check(false);
  }
}

RC_GTEST_PROP(BurstProperty, RowsAfterEditsWithoutABatch_AreThoseOfAPopulationAfterEach, ())
{
  FollowingPanel panel;
  const int edits = *rc::gen::inRange(1, 40);
  for (int edit = 0; edit < edits; ++edit) {
    panel.SetAnswersAtRandom();

    panel.EditAtRandom();

    panel.Check(false);
  }
}

RC_GTEST_PROP(BurstProperty, BatchesOfCreationsAndNames_AreRefilledIfAndOnlyIfTheyAreTooLong, ())
{
  FollowingPanel panel;
  const int batches = *rc::gen::inRange(1, 4);
  for (int batch = 0; batch < batches; ++batch) {
    const int edits = ChooseBatchSize();
    panel.ForgetCalls();
    {
      const memkernel::TreeBatch scope(panel.GetTree());
      for (int edit = 0; edit < edits; ++edit) {
        if (*rc::gen::inRange(0, 4) == 0) {
          panel.Rename();
        } else {
          panel.Add(*rc::gen::inRange<std::size_t>(0, 3));
        }
      }
    }
    RC_ASSERT(panel.CountRefills() == (edits > s_most ? 1 : 0));
    panel.Check(false);
  }
}

RC_GTEST_PROP(BurstProperty, ChildrenAddedLastAndShown_HaveTheirRowsInTheOrderOfAPopulation, ())
{
  FollowingPanel panel;
  const int edits = ChooseBatchSize();
  {
    const memkernel::TreeBatch scope(panel.GetTree());
    for (int edit = 0; edit < edits; ++edit) {
      panel.Add(0);
    }
  }

  panel.Check(true);
}

}  // namespace
