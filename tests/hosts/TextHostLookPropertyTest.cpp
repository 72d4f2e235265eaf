#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "TestInstance.h"
#include "TextOf.h"
#include "guitree/TypeIconMap.h"
#include "testsupport/ScriptedSelectionController.h"

namespace {

using hosttest::Instance;
using texthost::TextHost;

/// What a scene says of the instances.
struct Truth {
  TextHost::VisibleMap visible;
  guitree::TypeIconMap icons{nullptr};

  [[nodiscard]] guitree::VisibleState GetState(const Instance& instance) const
  {
    const auto known = visible.find(instance.Get());
    return known != visible.end() ? known->second : guitree::VisibleStateHidden;
  }
  [[nodiscard]] std::optional<int> GetIcon(const Instance& instance) const
  {
    int icon = 0;
    return icons._Get(instance.Get(), icon) ? std::optional(icon) : std::nullopt;
  }
};

/// Rows without levels, each of which is written down as the calls tell it.
class Model {
public:
  struct Row {
    Instance instance;
    std::string name;
    std::string visible;
    std::optional<int> icon;
    bool isSelected = false;
    bool isHighlighted = false;
  };

  std::vector<Row> rows;
  bool showsScene = false;

  [[nodiscard]] Row* Find(const Instance& instance)
  {
    const auto found = std::find_if(rows.begin(), rows.end(), [&](const Row& row) { return row.instance == instance; });
    return found != rows.end() ? &*found : nullptr;
  }
  void Remove(const Instance& instance)
  {
    std::erase_if(rows, [&](const Row& row) { return row.instance == instance; });
  }
  void Create(const Instance& instance, bool isSelected, bool isHighlighted)
  {
    const Row row{.instance = instance,
                  .name = std::string(instance->objectName),
                  .visible = showsScene ? "[ ]" : "   ",
                  .icon = std::nullopt,
                  .isSelected = isSelected,
                  .isHighlighted = isHighlighted};
    if (Row* const known = Find(instance)) {
      *known = row;
    } else {
      rows.push_back(row);
    }
  }
  void Clear()
  {
    rows.clear();
    showsScene = false;
  }
  void Paint(Row& row, const Truth& truth) const
  {
    row.visible = s_marks.at(truth.GetState(row.instance));
    row.icon = truth.GetIcon(row.instance);
  }
  [[nodiscard]] std::string GetText() const
  {
    std::string text;
    for (const Row& row : rows) {
      const bool isLoaded = row.icon && *row.icon % 2 == 1;
      text += std::string(row.isSelected ? ">" : " ") + (row.isHighlighted ? "~" : " ");
      text += showsScene ? row.visible + (isLoaded ? "* " : "  ") : " ";
      text += row.name + (row.icon && *row.icon / 2 == 14 ? " [shape failed]\n" : "\n");
    }
    return text;
  }

private:
  inline static const std::map<guitree::VisibleState, std::string> s_marks{
      {guitree::VisibleStateVisible, "[x]"},
      {guitree::VisibleStateHidden, "[ ]"},
      {guitree::VisibleStateVisibleMixed, "[-]"},
      {guitree::VisibleStateHiddenMixed, "[-]"},
      {guitree::VisibleStateVisibleAllChildren, "[x]"},
      {guitree::VisibleStateHiddenAllChildren, "[x]"},
      {guitree::VisibleStateThumbnailVisible, "[t]"},
      {guitree::VisibleStateThumbnailHidden, "[_]"},
  };
};

/// A host and its model, which hear the same.
class Pair {
public:
  TextHost host;
  Model model;

  void DoAny()
  {
    switch (*rc::gen::weightedElement<int>(
        {{8, 0}, {2, 1}, {1, 2}, {4, 3}, {1, 4}, {8, 5}, {3, 6}, {2, 7}, {1, 8}, {3, 9}, {3, 10}, {1, 11}})) {
      case 0:
        return _Create();
      case 1:
        return _Remove();
      case 2:
        return _Clear();
      case 3:
        return _Repaint();
      case 4:
        return _EndScene();
      case 5:
        return _Change();
      case 6:
        return _Select();
      case 7:
        return _Deselect();
      case 8:
        return _ClearSelection();
      case 9:
        return _Highlight();
      case 10:
        return _Rename();
      default:
        return _RenameAll();
    }
  }

private:
  /// By number: what is drawn may be drawn again for another pair.
  [[nodiscard]] const Instance& _Any() const
  {
    return m_instances[*rc::gen::inRange<std::size_t>(0, m_instances.size())];
  }
  [[nodiscard]] static bool _Toss() { return *rc::gen::arbitrary<bool>(); }

  void _Create()
  {
    const Instance instance = _Any();
    const auto controller = du::MakeSmart<testsupport::ScriptedSelectionController>();
    const bool isSelected = _Toss();
    const bool isHighlighted = _Toss();
    if (isSelected) {
      controller->selected = {instance};
    }
    host.InstanceCreate(instance, {}, controller, isHighlighted);
    model.Create(instance, isSelected, isHighlighted);
  }
  void _Remove()
  {
    const Instance instance = _Any();
    host.InstanceRemove(instance, {}, _Toss());
    model.Remove(instance);
  }
  void _Clear()
  {
    if (_Toss()) {
      host.ClearTree();
    } else {
      host.Reset();
    }
    model.Clear();
  }
  void _Repaint()
  {
    host.UpdateVisAndTypeIcons(&m_truth.visible, &m_truth.icons);
    model.showsScene = true;
    for (Model::Row& row : model.rows) {
      model.Paint(row, m_truth);
    }
  }
  void _EndScene()
  {
    host.UpdateVisAndTypeIcons(nullptr, nullptr);
    model.showsScene = false;
    for (Model::Row& row : model.rows) {
      row.visible = "   ";
      row.icon.reset();
    }
  }
  // The scene goes on also where the host is not told: what it shows then is old.
  void _Change()
  {
    TextHost::ChangeMap visibleChanges;
    TextHost::ChangeMap iconChanges;
    const auto count = *rc::gen::inRange(1, 6);
    for (int change = 0; change < count; ++change) {
      _ChangeState(visibleChanges);
      _ChangeIcon(iconChanges);
    }
    if (_Toss()) {
      return;
    }
    host.UpdateVisAndTypeIconChanges(&m_truth.visible, &visibleChanges, &m_truth.icons, &iconChanges);
    model.showsScene = true;
    for (Model::Row& row : model.rows) {
      Model::Row painted = row;
      model.Paint(painted, m_truth);
      row.visible = visibleChanges.find(row.instance.Get()) != visibleChanges.end() ? painted.visible : row.visible;
      row.icon = iconChanges.find(row.instance.Get()) != iconChanges.end() ? painted.icon : row.icon;
    }
  }
  void _ChangeState(TextHost::ChangeMap& changes)
  {
    const Instance instance = _Any();
    const auto state = static_cast<guitree::VisibleState>(*rc::gen::inRange(1, 9));
    changes[instance.Get()] = state << 4 | m_truth.GetState(instance);
    if (state == guitree::VisibleStateHidden) {
      m_truth.visible.erase(instance.Get());
    } else {
      m_truth.visible[instance.Get()] = state;
    }
  }
  void _ChangeIcon(TextHost::ChangeMap& changes)
  {
    const Instance instance = _Any();
    const int icon = *rc::gen::element(0, 1, 28, 29);
    m_truth.icons.Set(instance.Get(), icon);
    changes[instance.Get()] = icon;
  }
  void _Select() { _Mark(true); }
  void _Deselect() { _Mark(false); }
  void _Mark(bool isSelected)
  {
    std::vector<du::SmartPtr<zelk::Object>> items;
    const auto count = *rc::gen::inRange(0, 4);
    for (int item = 0; item < count; ++item) {
      const Instance& instance = _Any();
      items.emplace_back(instance);
      if (Model::Row* row = model.Find(instance)) {
        row->isSelected = isSelected;
      }
    }
    if (isSelected) {
      host.SelectItems(items);
    } else {
      host.DeselectItems(items);
    }
  }
  void _ClearSelection()
  {
    host.ClearSelection();
    for (Model::Row& row : model.rows) {
      row.isSelected = false;
    }
  }
  void _Highlight()
  {
    const Instance instance = _Any();
    const bool on = _Toss();
    Model::Row* row = model.Find(instance);
    RC_ASSERT(host.SetAssocHlight(instance.Get(), on) == (row != nullptr));
    if (row) {
      row->isHighlighted = on;
    }
  }
  void _Rename()
  {
    const Instance instance = _Any();
    instance->objectName = du::Symbol("n" + std::to_string(*rc::gen::inRange(0, 100)));
    if (_Toss()) {
      return;
    }
    host.CheckAndUpdateNodeNameAndType(instance);
    if (Model::Row* row = model.Find(instance)) {
      row->name = std::string(instance->objectName);
    }
  }
  void _RenameAll()
  {
    host.UpdateNodeNames();
    for (Model::Row& row : model.rows) {
      row.name = std::string(row.instance->objectName);
    }
  }

  std::vector<Instance> m_instances{hosttest::Make("a"), hosttest::Make("b"), hosttest::Make("c"), hosttest::Make("d"),
                                    hosttest::Make("e")};
  Truth m_truth;
};

RC_GTEST_PROP(TextHostLookProperty, MarksAfterAnyCalls_AreWhatTheCallsHaveTold, ())
{
  Pair pair;
  const auto calls = *rc::gen::inRange(1, 60);
  for (int call = 0; call < calls; ++call) {
    pair.DoAny();
    RC_ASSERT(hosttest::TextOf(pair.host, {.states = true}) == pair.model.GetText());
  }
}

}  // namespace
