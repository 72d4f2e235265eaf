#pragma once

#include <string>
#include <vector>

#include "script/PanelControl.h"

/// A panel that notes what a script does to it, and answers as it is told.
class RecordingPanel final : public script::PanelControl {
public:
  void SetInSight(bool isInSight) override { calls.emplace_back(isInSight ? "show" : "hide"); }
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
  bool Expand(const zelk::BaseInstance& instance) override
  {
    calls.push_back("expand " + std::string(instance.GetObjectName()));
    return canExpand;
  }

  std::vector<std::string> calls;
  FilterSettings filter;
  bool isFilterAtWork = false;
  bool canExpand = false;
};
