#pragma once

#include <vector>

#include <QSettings>
#include <QString>

#include "du/DualSymbol.h"
#include "zelremote/StructureFilterInfo.h"

namespace qthost {

/// What the user of a panel looks for, and how the rows are presented. A value: it lives on its own, and belongs to one
/// thread at a time.
struct FilterSettings {
  using Visibility = zelremote::StructureFilterInfo::Visibility;

  /// As `zelremote::TextPattern` reads it.
  QString text;
  bool matchesCase = false;
  bool matchesWholeWords = false;
  /// Where text is looked for; with no place at all it looks for nothing.
  bool searchesName = true;
  std::vector<du::DualSymbol> columns;
  bool selectedOnly = false;
  Visibility visibility = Visibility::Any;
  bool issuesOnly = false;
  bool partsOnly = false;
  /// What stands beside a match is shown as well.
  bool showsSiblings = false;
  /// One list below the topmost row in place of the tree.
  bool isList = false;
  /// The panel filters anew when the tree has changed, or the selection that it looks at.
  bool follows = false;
  /// Group and name of a property; both empty for the order of the assembly.
  du::DualSymbol sortColumn;
  bool isAscending = true;

  friend bool operator==(const FilterSettings&, const FilterSettings&) = default;

  /// The property by which rows are sorted by name.
  [[nodiscard]] static const du::DualSymbol& GetNameColumn();
  /// The column with the group that an empty one stands for.
  [[nodiscard]] static du::DualSymbol CompleteColumn(const du::DualSymbol& column);

  /// What rows are sorted by: a list without a column is by name.
  [[nodiscard]] du::DualSymbol GetSortColumn() const;
  /// Whether anything is looked for, so that rows are matches, or beside or above one.
  [[nodiscard]] bool HasCriterion() const;
  /// Makes the filter one of these settings. A list, or an order, without a criterion is had by a filter that
  /// everything passes: nothing else presents all rows in one. Bodies and collapsed instances follow the switches of
  /// the process (`guitree::WorldTreeState`); the results list of the filter is left alone.
  void ApplyTo(zelremote::StructureFilterInfo& filter) const;

  /// Writes each setting into the current group.
  void Save(QSettings& settings) const;
  /// What is not stored there, or cannot be understood, is the default.
  [[nodiscard]] static FilterSettings Restore(const QSettings& settings);
};

}  // namespace qthost
