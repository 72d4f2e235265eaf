#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "zelk/BaseTree.h"
#include "zelremote/TextPattern.h"

namespace bench {

/// The least that a filter by name has to do: one walk, one test of each name by the structure filter's own search, and
/// a node for each instance that matches or has a match below it. No sets, no lock, no order, no progress, no cancel.
class PrunedTree {
public:
  PrunedTree() = default;
  PrunedTree(const PrunedTree&) = delete;
  PrunedTree& operator=(const PrunedTree&) = delete;
  ~PrunedTree() = default;

  void Build(const zelk::BaseTree& tree, const std::string& text);
  [[nodiscard]] std::size_t GetNodeCount() const;

private:
  struct Node {
    const zelk::BaseInstance* instance = nullptr;
    std::vector<std::unique_ptr<Node>> children;
  };

  [[nodiscard]] std::unique_ptr<Node> _BuildBranch(const zelk::BaseInstance& instance);
  [[nodiscard]] static std::size_t _Count(const Node& node);

  zelremote::TextSearch m_search;
  std::unique_ptr<Node> m_root;
};

}  // namespace bench
