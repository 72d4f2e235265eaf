#pragma once

#include <map>
#include <string>
#include <vector>

#include "hostcheck/ForwardingHost.h"

namespace testsupport {

/// The rows that a host ends up with, kept beside the host that the calls go on to. A row whose parent has none goes
/// under the nearest ancestor that has one, or to the top. A second creation moves the row, with all below it.
class RowsHost : public hostcheck::ForwardingHost {
public:
  using ForwardingHost::ForwardingHost;
  using ForwardingHost::InstanceCreate;

  /// The way from the top to each row, parents first: "root/plate/bolt". The names are those of now.
  [[nodiscard]] std::vector<std::string> GetRows() const;
  /// The same without the order.
  [[nodiscard]] std::vector<std::string> GetSortedRows() const;

  void ClearTree() override;
  void Reset() override;
  void InstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance, const du::SmartPtr<zelk::BaseInstance>& parent,
                      const du::SmartPtr<guitree::TreeSelectionController>& controller, bool assocHlight) override;
  void InstanceRemove(const du::SmartPtr<zelk::BaseInstance>& instance, const du::SmartPtr<zelk::BaseInstance>& parent,
                      bool repopulatePending) override;

private:
  struct Row {
    /// Held, so that the name can be read and no other instance gets the address.
    du::SmartPtr<zelk::BaseInstance> instance;
    const zelk::BaseInstance* parent = nullptr;
    std::vector<const zelk::BaseInstance*> children;
  };

  void _TakeFromParent(const zelk::BaseInstance* instance);
  void _Erase(const zelk::BaseInstance* instance);
  void _AddRowsBelow(const zelk::BaseInstance* instance, const std::string& path, std::vector<std::string>& out) const;

  /// Null stands for what is above the topmost rows.
  std::map<const zelk::BaseInstance*, Row> m_rows{{nullptr, {}}};
};

}  // namespace testsupport
