#pragma once

#include <cstddef>
#include <vector>

#include <QAbstractItemModel>
#include <QString>

namespace bench {

/// The least that a Qt model of a tree needs: one flat record a row, in the order of a walk. Read only.
class LeanModel final : public QAbstractItemModel {
public:
  void Reserve(std::size_t rows) { m_rows.reserve(rows); }
  /// Takes the next row of the walk, parents first; the root has depth 0.
  void Append(const QString& text, std::size_t depth);
  /// After the last row.
  void Finish();

  [[nodiscard]] QModelIndex index(int row, int column, const QModelIndex& parent) const override;
  [[nodiscard]] QModelIndex parent(const QModelIndex& child) const override;
  [[nodiscard]] int rowCount(const QModelIndex& parent) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

private:
  struct Row {
    QString text;
    int parent;
    int positionInParent;
    int childCount;
    /// Where the children stand in `m_children`.
    int firstChild;
  };

  static constexpr int s_noParent = -1;

  std::vector<Row> m_rows;
  /// The rows again, grouped by parent.
  std::vector<int> m_children;
  /// The way from the root to the row that came last.
  std::vector<int> m_path;
};

}  // namespace bench
