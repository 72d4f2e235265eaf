#include "peers/LeanModel.h"

#include <QVariant>

namespace bench {

void LeanModel::Append(const QString& text, std::size_t depth)
{
  m_path.resize(depth);
  const int parent = m_path.empty() ? s_noParent : m_path.back();
  int position = 0;
  if (parent != s_noParent) {
    position = m_rows[static_cast<std::size_t>(parent)].childCount++;
  }
  m_path.push_back(static_cast<int>(m_rows.size()));
  m_rows.push_back({text, parent, position, 0, 0});
}

void LeanModel::Finish()
{
  int next = 0;
  for (Row& row : m_rows) {
    row.firstChild = next;
    next += row.childCount;
  }
  m_children.resize(static_cast<std::size_t>(next));
  for (std::size_t i = 1; i < m_rows.size(); ++i) {
    const Row& parent = m_rows[static_cast<std::size_t>(m_rows[i].parent)];
    const auto place = m_children.begin() + parent.firstChild + m_rows[i].positionInParent;
    *place = static_cast<int>(i);
  }
}

QModelIndex LeanModel::index(int row, int column, const QModelIndex& parent) const
{
  if (row < 0 || row >= rowCount(parent) || column != 0) {
    return {};
  }
  if (!parent.isValid()) {
    return createIndex(row, column, quintptr{0});
  }
  const auto child = m_children.begin() + m_rows[parent.internalId()].firstChild + row;
  return createIndex(row, column, static_cast<quintptr>(*child));
}

QModelIndex LeanModel::parent(const QModelIndex& child) const
{
  const int above = child.isValid() ? m_rows[child.internalId()].parent : s_noParent;
  if (above == s_noParent) {
    return {};
  }
  return createIndex(m_rows[static_cast<std::size_t>(above)].positionInParent, 0, static_cast<quintptr>(above));
}

int LeanModel::rowCount(const QModelIndex& parent) const
{
  if (!parent.isValid()) {
    return m_rows.empty() ? 0 : 1;
  }
  return m_rows[parent.internalId()].childCount;
}

int LeanModel::columnCount(const QModelIndex& /*parent*/) const
{
  return 1;
}

QVariant LeanModel::data(const QModelIndex& index, int role) const
{
  return index.isValid() && role == Qt::DisplayRole ? QVariant(m_rows[index.internalId()].text) : QVariant();
}

}  // namespace bench
