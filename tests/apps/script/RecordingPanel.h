#pragma once

#include <string>
#include <vector>

#include "script/PanelControl.h"

/// A panel that notes what a script does to it, and answers as it is told.
class RecordingPanel final : public script::PanelControl {
public:
  void SetInSight(bool isInSight) override { calls.emplace_back(isInSight ? "show" : "hide"); }
  void SetViewType(const du::SmartPtr<zelk::View>& view, const std::string& type) override
  {
    typedView = view;
    calls.push_back("type " + type);
  }
  void PrepareView(const du::SmartPtr<zelk::View>& view) override { calls.emplace_back(view ? "view" : "no view"); }
  void SetShowingBodies(bool on) override { calls.emplace_back(on ? "bodies" : "no bodies"); }
  void SetCollapsing(bool on) override { calls.emplace_back(on ? "collapse" : "no collapse"); }
  [[nodiscard]] bool IsCollapsing() const override { return isCollapsing; }
  void SetResults(const du::SmartPtr<structure_utils::TreeResultsList>& list) override { results = list; }
  void SetFilter(const FilterSettings& settings) override
  {
    calls.emplace_back("filter");
    filter = settings;
  }
  [[nodiscard]] const FilterSettings& GetFilter() const override { return filter; }
  void HoldFilters(bool on) override { calls.emplace_back(on ? "hold" : "resume"); }
  bool CancelFilter() override
  {
    calls.emplace_back("cancel");
    return isFilterAtWork;
  }
  Expansion Expand(const zelk::BaseInstance& instance) override
  {
    calls.push_back("expand " + std::string(instance.GetObjectName()));
    return expansion;
  }

  std::vector<std::string> calls;
  FilterSettings filter;
  du::SmartPtr<zelk::View> typedView;
  du::SmartPtr<structure_utils::TreeResultsList> results;
  bool isCollapsing = false;
  bool isFilterAtWork = false;
  Expansion expansion = Expansion::Done;
};
