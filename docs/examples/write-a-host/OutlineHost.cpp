#include "OutlineHost.h"

#include <algorithm>
#include <iostream>

#include "guitree/TreeSelectionController.h"

// begin brackets
void OutlineHost::StartTreeUpdate()
{
  ++m_depth;
}

void OutlineHost::FinishTreeUpdate()
{
  if (m_depth > 0 && --m_depth == 0) {
    Repaint();
  }
}

void OutlineHost::ClearTree()
{
  m_rows = {{nullptr, Row{}}};
}

void OutlineHost::Reset()
{
  ClearTree();
  m_depth = 0;
}
// end brackets

// begin create
void OutlineHost::InstanceCreate(guitree::FilteredTree::Node* node,
                                 const du::SmartPtr<guitree::TreeSelectionController>& /*controller*/,
                                 bool /*assocHlight*/)
{
  const auto* parent = node->parent;
  while (parent && !m_rows.contains(parent->instance)) {
    parent = parent->parent;
  }
  Place(*node->instance, parent ? parent->instance : nullptr);
}

void OutlineHost::InstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance,
                                 const du::SmartPtr<zelk::BaseInstance>& parent,
                                 const du::SmartPtr<guitree::TreeSelectionController>& /*controller*/,
                                 bool /*assocHlight*/)
{
  Place(*instance, FindParentRow(parent));
}

OutlineHost::Identity OutlineHost::FindParentRow(du::SmartPtr<zelk::BaseInstance> parent) const
{
  while (parent && !m_rows.contains(parent.Get())) {
    parent->GetBaseParent(parent);
  }
  return parent.Get();
}

void OutlineHost::Place(const zelk::BaseInstance& instance, Identity parent)
{
  const auto [found, isNew] = m_rows.try_emplace(&instance);
  Row& row = found->second;
  row.name = instance.GetObjectName();
  if (!isNew && row.parent == parent) {
    return;
  }
  if (!isNew) {
    LeaveParent(&instance);
  }
  row.parent = parent;
  m_rows[parent].children.push_back(&instance);
}

void OutlineHost::LeaveParent(Identity row)
{
  const auto found = m_rows.find(row);
  if (found != m_rows.end()) {
    std::erase(m_rows[found->second.parent].children, row);
  }
}
// end create

// begin remove
void OutlineHost::InstanceRemove(const du::SmartPtr<zelk::BaseInstance>& instance,
                                 const du::SmartPtr<zelk::BaseInstance>& /*parent*/, bool /*repopulatePending*/)
{
  LeaveParent(instance.Get());
  std::vector<Identity> doomed{instance.Get()};
  while (!doomed.empty()) {
    const auto row = m_rows.extract(doomed.back());
    doomed.pop_back();
    if (row) {
      doomed.insert(doomed.end(), row.mapped().children.begin(), row.mapped().children.end());
    }
  }
}
// end remove

// begin repaint
void OutlineHost::Repaint() const
{
  struct Place {
    Identity row;
    std::size_t level;
  };
  std::vector<Place> places{{nullptr, 0}};
  while (!places.empty()) {
    const auto [identity, level] = places.back();
    places.pop_back();
    const Row& row = m_rows.at(identity);
    if (identity) {
      std::cout << std::string(2 * (level - 1), ' ') << row.name << '\n';
    }
    for (auto child = row.children.rbegin(); child != row.children.rend(); ++child) {
      places.push_back({*child, level + 1});
    }
  }
}
// end repaint
