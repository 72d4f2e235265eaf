#include "TreePrinter.h"

#include <algorithm>
#include <ostream>

#include "RowMarks.h"
#include "RowName.h"

namespace texthost {

struct TreePrinter::Signs {
  const char* branch;
  const char* lastBranch;
  const char* line;
  const char* gap;
  const char* placeholder;
};

namespace {

std::size_t CountSiblings(const auto* first)
{
  std::size_t count = 0;
  for (; first; first = first->next) {
    ++count;
  }
  return count;
}

}  // namespace

TreePrinter::TreePrinter(std::ostream& out, const PrintStyle& style, const TextHost& host)
    : m_out(out), m_style(style), m_host(host), m_signs(_GetSigns(style))
{
}

const TreePrinter::Signs& TreePrinter::_GetSigns(const PrintStyle& style)
{
  static constexpr Signs s_ascii{"|- ", "`- ", "|  ", "   ", "..."};
  static constexpr Signs s_unicode{"├─ ", "└─ ", "│  ", "   ", "…"};
  return style.ascii ? s_ascii : s_unicode;
}

void TreePrinter::Print()
{
  const TextHost::Row* row = m_host.m_top.firstChild;
  while (row) {
    _PrintRow(*row);
    if (_IsOpen() && row->firstChild) {
      _Descend(*row);
      row = row->firstChild;
      continue;
    }
    if (_IsOpen() && row->hasPlaceholder) {
      _Descend(*row);
      _PrintPlaceholder();
      _Ascend();
    }
    row = _GoOn(*row);
  }
  _PrintNote();
}

const TextHost::Row* TreePrinter::_GoOn(const TextHost::Row& from)
{
  const TextHost::Row* row = &from;
  while (!row->next && m_level > 0) {
    row = row->parent;
    if (row->hasPlaceholder) {
      _PrintPlaceholder();
    }
    _Ascend();
  }
  return row->next;
}

void TreePrinter::_Descend(const TextHost::Row& row)
{
  if (m_level > 0) {
    m_goesOn.push_back(!_IsLast(row));
  }
  ++m_level;
}

void TreePrinter::_Ascend()
{
  --m_level;
  if (m_level > 0) {
    m_goesOn.pop_back();
  }
}

bool TreePrinter::_IsLast(const TextHost::Row& row)
{
  return !row.next && !row.parent->hasPlaceholder;
}

void TreePrinter::_PrintRow(const TextHost::Row& row)
{
  _PrintMarks(row);
  _PrintIndent(_IsLast(row));
  m_out << ShowName(row.text, m_style.ascii) << _DescribeState(row) << '\n';
}

void TreePrinter::_PrintPlaceholder()
{
  _PrintBlankMarks();
  _PrintIndent(true);
  m_out << m_signs.placeholder << '\n';
}

void TreePrinter::_PrintNote()
{
  if (m_host.m_isCalculating) {
    m_out << "(the filter is at work)\n";
    return;
  }
  switch (m_host.m_note) {
    case TextHost::Note::NoMatch:
      m_out << "(no match)\n";
      break;
    case TextHost::Note::Cancelled:
      m_out << "(the filter was cancelled)\n";
      break;
    case TextHost::Note::None:
      break;
  }
}

void TreePrinter::_PrintMarks(const TextHost::Row& row)
{
  if (!m_style.states) {
    return;
  }
  m_out << (m_host.m_selected.contains(row.instance.Get()) ? '>' : ' ');
  m_out << (m_host.m_highlighted.contains(row.instance.Get()) ? '~' : ' ');
  if (m_host.m_showsScene) {
    m_out << GetVisibleMark(row.visible) << (row.icon && IsLoadedIcon(*row.icon) ? '*' : ' ');
  }
  m_out << ' ';
}

void TreePrinter::_PrintBlankMarks()
{
  if (m_style.states) {
    m_out << (m_host.m_showsScene ? "       " : "   ");
  }
}

void TreePrinter::_PrintIndent(bool isLast)
{
  if (m_level == 0) {
    return;
  }
  const std::size_t lines = std::min(m_level, TextHost::s_maxIndent) - 1;
  m_out << (m_style.color ? "\x1B[2m" : "");
  for (std::size_t level = 0; level < lines; ++level) {
    m_out << (m_goesOn[level] ? m_signs.line : m_signs.gap);
  }
  m_out << (isLast ? m_signs.lastBranch : m_signs.branch);
  if (m_level > TextHost::s_maxIndent) {
    m_out << "[level " << m_level << "] ";
  }
  m_out << (m_style.color ? "\x1B[0m" : "");
}

std::string TreePrinter::_DescribeKind(const TextHost::Row& row) const
{
  return m_style.states && row.icon ? DescribeIcon(*row.icon, row.text, m_style.ascii)
                                    : ShowState(row.text, m_style.ascii);
}

std::string TreePrinter::_DescribeState(const TextHost::Row& row) const
{
  std::string state = _DescribeKind(row);
  state = state.empty() ? state : _Mark('[' + state + ']');
  if (!_IsOpen() && (row.firstChild || row.hasPlaceholder)) {
    const std::string count = row.firstChild ? std::to_string(CountSiblings(row.firstChild)) : "";
    state += _Mark("[+" + count + (row.hasPlaceholder ? m_signs.placeholder : "") + "]");
  }
  return state;
}

std::string TreePrinter::_Mark(const std::string& text) const
{
  return m_style.color ? " \x1B[33m" + text + "\x1B[0m" : " " + text;
}

}  // namespace texthost
