#pragma once

#include <string>
#include <vector>

#include "guitree/SceneInfoLog.h"

namespace sceneinfotest {

/// A log that also writes down what it is told, in order.
class RecordingLog : public guitree::SceneInfoLog {
public:
  using SceneInfoLog::SceneInfoLog;
  using SceneInfoLog::SetVisible;

  std::vector<std::string> calls;

  void SetVisible(zelk::BaseInstance* instance, guitree::ECompVisible visible, bool propagate) override
  {
    calls.push_back("SetVisible(" + _NameOf(instance) + ", " + std::to_string(visible)
                    + (propagate ? ", propagate)" : ")"));
    SceneInfoLog::SetVisible(instance, visible, propagate);
  }
  bool SetLoaded(zelk::BaseInstance* instance, bool loaded) override
  {
    calls.push_back("SetLoaded(" + _NameOf(instance) + (loaded ? ", true)" : ", false)"));
    return SceneInfoLog::SetLoaded(instance, loaded);
  }
  void MarkTypeIconChanged(const zelk::BaseInstance* instance) override
  {
    calls.push_back("MarkTypeIconChanged(" + _NameOf(instance) + ")");
    SceneInfoLog::MarkTypeIconChanged(instance);
  }

private:
  static std::string _NameOf(const zelk::BaseInstance* instance)
  {
    return instance ? std::string(instance->GetObjectName()) : "null";
  }
};

}  // namespace sceneinfotest
