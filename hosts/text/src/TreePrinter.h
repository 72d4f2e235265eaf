#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

#include "texthost/TextHost.h"

namespace texthost {

/// Writes the rows of one host. Lives for one printing. Goes along the links of the rows, without recursion.
class TreePrinter {
public:
  TreePrinter(std::ostream& out, const PrintStyle& style, const TextHost& host);

  void Print();

private:
  struct Signs;

  [[nodiscard]] static const Signs& _GetSigns(const PrintStyle& style);
  /// Whether rows of the present level show what is below them.
  [[nodiscard]] bool _IsOpen() const noexcept { return m_level < m_style.depth; }
  [[nodiscard]] static bool _IsLast(const TextHost::Row& row);
  void _Descend(const TextHost::Row& row);
  void _Ascend();
  /// The row that comes after `from` and everything below it; null at the end.
  [[nodiscard]] const TextHost::Row* _GoOn(const TextHost::Row& from);
  void _PrintRow(const TextHost::Row& row);
  void _PrintPlaceholder();
  /// The line about a filter, if there is anything to say.
  void _PrintNote();
  void _PrintMarks(const TextHost::Row& row);
  void _PrintBlankMarks();
  void _PrintIndent(bool isLast);
  /// What stands in brackets behind the name: the icon, or what is known without a scene.
  [[nodiscard]] std::string _DescribeKind(const TextHost::Row& row) const;
  [[nodiscard]] std::string _DescribeState(const TextHost::Row& row) const;
  [[nodiscard]] std::string _Mark(const std::string& text) const;

  std::ostream& m_out;
  const PrintStyle m_style;
  const TextHost& m_host;
  const Signs& m_signs;
  /// 0 for the topmost rows.
  std::size_t m_level = 0;
  /// For each level from the one below the topmost to the one above the present: whether its line goes on.
  std::vector<bool> m_goesOn;
};

}  // namespace texthost
