#include "support/PrunedTree.h"

#include <utility>

#include "du/SmartPtr.h"

namespace bench {

void PrunedTree::Build(const zelk::BaseTree& tree, const std::string& text)
{
  m_search.SetPattern(std::make_shared<const zelremote::TextPattern>(text, false, false));
  du::SmartPtr<zelk::BaseInstance> root;
  tree.GetBaseRoot(root);
  m_root = root ? _BuildBranch(*root) : nullptr;
}

std::size_t PrunedTree::GetNodeCount() const
{
  return m_root ? _Count(*m_root) : 0;
}

std::unique_ptr<PrunedTree::Node> PrunedTree::_BuildBranch(const zelk::BaseInstance& instance)
{
  m_search.Begin();
  auto node = m_search.Add(instance.GetObjectName().GetView())
                  ? std::make_unique<Node>(Node{.instance = &instance, .children = {}})
                  : nullptr;
  du::SmartPtr<zelk::BaseInstance> child;
  for (instance.GetBaseFirstChild(child); child; child->GetBaseNextSibling(child)) {
    auto branch = _BuildBranch(*child);
    if (!branch) {
      continue;
    }
    if (!node) {
      node = std::make_unique<Node>(Node{.instance = &instance, .children = {}});
    }
    node->children.push_back(std::move(branch));
  }
  return node;
}

std::size_t PrunedTree::_Count(const Node& node)
{
  std::size_t count = 1;
  for (const auto& child : node.children) {
    count += _Count(*child);
  }
  return count;
}

}  // namespace bench
