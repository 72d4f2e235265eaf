#pragma once

#include <functional>
#include <string>
#include <vector>

#include "TestTree.h"
#include "zelk/TreeObserver.h"

namespace kernelcontract {

using Lines = std::vector<std::string>;

/// Writes each callback as a line. Instances are told by the names that it was given or has heard.
class RecordingTreeObserver : public zelk::TreeObserver {
public:
  explicit RecordingTreeObserver(Names names = {}) : m_names(std::move(names)) {}

  void OnBeginUpdate() override { _Write("begin"); }
  void OnEndUpdate() override { _Write("end"); }
  void OnUnregister() override { _Write("unregister"); }
  void OnDestroy() override { _Write("destroy"); }
  void OnInstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance,
                        const du::SmartPtr<zelk::BaseInstance>& parent, const du::Symbol& name) override;
  void OnInstanceRemove(const du::SmartPtr<zelk::BaseInstance>& instance,
                        const du::SmartPtr<zelk::BaseInstance>& parent) override;
  void OnInstanceName(const du::SmartPtr<zelk::BaseInstance>& instance) override;

  /// "-" for null, "?" for one that was never heard of.
  [[nodiscard]] std::string GetName(const du::SmartPtr<zelk::BaseInstance>& instance) const;

  Lines lines;
  /// Called after each line but those of the brackets.
  std::function<void()> onEvent;
  std::function<void(const du::SmartPtr<zelk::BaseInstance>&)> onRemove;

private:
  void _Write(const std::string& line) { lines.push_back(line); }
  void _WriteEvent(const std::string& line);

  Names m_names;
};

}  // namespace kernelcontract
