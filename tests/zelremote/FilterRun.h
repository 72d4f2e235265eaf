#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "FilterItem.h"
#include "structure_utils/TreeFilterAdditionalInfo.h"
#include "testsupport/PlainScenes.h"
#include "testsupport/PlainShapeInstance.h"
#include "zelremote/StructureFilterInfo.h"

namespace filtertest {

using structure_utils::TreeFilterAdditionalInfo;
using Item = du::SmartPtr<FilterItem>;

class ListedScene : public testsupport::PlainShapeScene {
public:
  void Show(zelk::Instance* instance, bool isVisible)
  {
    auto& shape = m_shapes[instance];
    shape = du::MakeSmart<testsupport::PlainShapeInstance>(du::SmartPtr<zelk::Instance>(instance));
    shape->isVisible = isVisible;
  }
  bool GetShapeInstance(const du::ConstSmartPtr<zelk::Instance>& instance,
                        du::SmartPtr<zelk::ShapeInstance>& out) const override
  {
    const auto found = m_shapes.find(instance.Get());
    out.Reset();
    if (found != m_shapes.end()) {
      out = found->second;
    }
    return found != m_shapes.end();
  }

private:
  std::map<const zelk::Instance*, du::SmartPtr<testsupport::PlainShapeInstance>> m_shapes;
};

class ListedIssues final : public TreeFilterAdditionalInfo::TreeFilterStatusLookup {
public:
  std::map<const zelk::Instance*, TFStatus> issues;

  TFStatus TreeFilterGetItemStatus(const du::ConstSmartPtr<zelk::Instance>& instance,
                                   const du::SmartPtr<zelk::Scene>& /*scene*/) override
  {
    const auto found = issues.find(instance.Get());
    return found == issues.end() ? TFStatusNone : found->second;
  }
};

/// All that a filter is asked with besides the instance.
class FilterRun {
public:
  du::SmartPtr<ListedScene> scene = du::MakeSmart<ListedScene>();
  ListedIssues issues;
  std::set<du::SmartPtr<zelk::BaseInstance>> results;
  std::set<du::SmartPtr<zelk::BaseInstance>> selected;

  [[nodiscard]] du::SmartPtr<du::RefCounted> MakeInfo()
  {
    return du::MakeSmart<TreeFilterAdditionalInfo>(scene, du::MakeSmart<structure_utils::TreeResultsList>(results),
                                                   &issues);
  }

  /// Whether the instance comes through the pass.
  [[nodiscard]] bool Passes(structure_utils::TreeFilterInfoBase& filter, zelk::BaseInstance* instance,
                            bool hiddenPass = false)
  {
    du::SmartPtr<du::RefCounted> info = MakeInfo();
    return !filter.IsFilteredOut(du::SmartPtr<zelk::BaseInstance>(instance), selected, hiddenPass, info, nullptr);
  }
};

/// The names of all below and with `root` that come through, in the order of a walk.
[[nodiscard]] inline std::vector<std::string> GetPassing(FilterRun& run, structure_utils::TreeFilterInfoBase& filter,
                                                         FilterItem* root, bool hiddenPass = false)
{
  std::vector<std::string> names;
  std::vector<FilterItem*> open{root};
  while (!open.empty()) {
    FilterItem* item = open.back();
    open.pop_back();
    if (run.Passes(filter, item, hiddenPass)) {
      names.emplace_back(item->name);
    }
    for (auto child = item->children.rbegin(); child != item->children.rend(); ++child) {
      open.push_back(child->Get());
    }
  }
  return names;
}

}  // namespace filtertest
