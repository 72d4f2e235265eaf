#include <utility>

#include <QFont>

#include "RowTable.h"
#include "RowWords.h"
#include "guitree/SceneInfoLog.h"
#include "guitree/TypeIcon.h"
#include "guitree/TypeIconMap.h"
#include "qthost/GuiTreeItemModel.h"
#include "zelk/BaseInstanceDynamicPropertiesCache.h"

namespace qthost {

namespace {

// A view searches all its rows for each range, so that more of them cost more than to paint everything.
constexpr std::size_t s_mostRanges = 32;

constexpr int s_noIcon = -1;

int GetUnloaded(int icon)
{
  return icon & ~1;
}

int GetComparedSide(int icon)
{
  switch (GetUnloaded(icon)) {
    case guitree::IconComparedFirst:
      return 1;
    case guitree::IconComparedOther:
      return 2;
    default:
      return 0;
  }
}

bool HasIssue(int icon)
{
  switch (icon == s_noIcon ? icon : GetUnloaded(icon)) {
    case guitree::IconProxyShapeFailed:
    case guitree::IconProxyExpandFailed:
    case guitree::IconShapeFailed:
    case guitree::IconCollapsedSiblingFailed:
    case guitree::IconBodyFailed:
    case guitree::IconConstructionBodyFailed:
      return true;
    default:
      return false;
  }
}

/// Underlined, and otherwise the font of the view.
QVariant GetHighlightFont()
{
  QFont font;
  font.setUnderline(true);
  return font;
}

QVariant GetCheckState(int state)
{
  switch (state) {
    case guitree::VisibleStateNone:
      return {};
    case guitree::VisibleStateVisibleMixed:
    case guitree::VisibleStateHiddenMixed:
      return Qt::PartiallyChecked;
    case guitree::VisibleStateHidden:
    case guitree::VisibleStateThumbnailHidden:
      return Qt::Unchecked;
    default:
      return Qt::Checked;
  }
}

}  // namespace

QVariant GuiTreeItemModel::data(const QModelIndex& index, int role) const
{
  const RowId row = _GetRow(index);
  if (!m_rows->IsRow(row)) {
    return {};
  }
  switch (role) {
    case Qt::DisplayRole:
      return _GetText(row, index.column());
    case Qt::DecorationRole:
      return m_iconProvider && index.column() == NameColumn ? m_iconProvider(std::max(_ReadIcon(row), 0)) : QVariant();
    case Qt::FontRole:
      return index.column() == NameColumn && m_rows->Has(row, RowTable::HasHighlight) ? GetHighlightFont() : QVariant();
    case Qt::CheckStateRole:
      return index.column() == VisibleColumn ? GetCheckState(_ReadState(row)) : QVariant();
    case Qt::ToolTipRole:
    case Qt::AccessibleTextRole:
      if (index.column() == NameColumn) {
        return _Describe(row);
      }
      return index.column() == VisibleColumn ? DescribeState(_ReadState(row)) : _GetText(row, index.column());
    default:
      return _GetLook(row, role);
  }
}

QVariant GuiTreeItemModel::_GetLook(RowId row, int role) const
{
  switch (role) {
    case TypeIconRole: {
      const int icon = _ReadIcon(row);
      return icon != s_noIcon ? QVariant(icon) : QVariant();
    }
    case VisibleStateRole: {
      const int state = _ReadState(row);
      return state != guitree::VisibleStateNone ? QVariant(state) : QVariant();
    }
    case ComparedRole:
      return GetComparedSide(_ReadIcon(row));
    case IssueRole:
      return HasIssue(_ReadIcon(row));
    case AssociatedRole:
      return m_rows->Has(row, RowTable::HasHighlight);
    case SelectedRole:
      return m_rows->Has(row, RowTable::IsSelected);
    case PlaceholderRole:
      return m_rows->Has(row, RowTable::HasPlaceholder);
    default:
      return {};
  }
}

QVariant GuiTreeItemModel::_GetText(RowId row, int column) const
{
  const zelk::BaseInstance& instance = *m_rows->GetInstance(row);
  if (column == NameColumn) {
    return ReadRowName(instance);
  }
  const auto property = static_cast<std::size_t>(column - FirstPropertyColumn);
  if (column < FirstPropertyColumn || property >= m_columns.size()) {
    return {};
  }
  const du::DualSymbol& name = m_columns[property];
  const du::Symbol& group =
      name.GetFirst().IsEmpty() ? zelk::BaseInstanceDynamicPropertiesCache::s_GroupName : name.GetFirst();
  return ReadProperty(instance, group, name.GetSecond());
}

// State is never told by colour or picture alone.
QString GuiTreeItemModel::_Describe(RowId row) const
{
  QString text = ReadRowName(*m_rows->GetInstance(row));
  const int icon = _ReadIcon(row);
  for (const QString& words : {DescribeState(_ReadState(row)), icon == s_noIcon ? QString() : DescribeIcon(icon),
                               m_rows->Has(row, RowTable::HasHighlight) ? tr("highlighted") : QString()}) {
    if (!words.isEmpty()) {
      text += QStringLiteral(", ") + words;
    }
  }
  return text;
}

int GuiTreeItemModel::_ReadState(RowId row) const
{
  const guitree::GuiTree* const panel = GetPanel();
  guitree::SceneInfoLog* const log = panel ? panel->GetCurrentLog() : nullptr;
  return log ? log->GetCompVisibleState(m_rows->GetInstance(row)) : guitree::VisibleStateNone;
}

// An icon that was never asked for is worked out now: a change of it is told only from then on.
int GuiTreeItemModel::_ReadIcon(RowId row) const
{
  const guitree::GuiTree* const panel = GetPanel();
  guitree::SceneInfoLog* const log = panel ? panel->GetCurrentLog() : nullptr;
  int icon = s_noIcon;
  const bool isKnown = log && log->GetTypeIconMap().Find(m_rows->GetInstance(row).Get(), icon, log->GetScene());
  return isKnown ? icon : s_noIcon;
}

bool GuiTreeItemModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
  const Instance instance = GetInstance(index);
  if (!instance || index.column() != VisibleColumn || role != Qt::CheckStateRole || !m_visibilitySetter) {
    return false;
  }
  return m_visibilitySetter(instance, value.toInt() == Qt::Checked);
}

Qt::ItemFlags GuiTreeItemModel::flags(const QModelIndex& index) const
{
  const RowId row = _GetRow(index);
  if (!m_rows->IsRow(row)) {
    return Qt::NoItemFlags;
  }
  Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
  if (index.column() == VisibleColumn && m_visibilitySetter && _ReadState(row) != guitree::VisibleStateNone) {
    flags |= Qt::ItemIsUserCheckable;
  }
  return flags;
}

QVariant GuiTreeItemModel::headerData(int section, Qt::Orientation orientation, int role) const
{
  if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()
      || (role != Qt::DisplayRole && role != Qt::AccessibleTextRole)) {
    return {};
  }
  switch (section) {
    case NameColumn:
      return tr("Name");
    case VisibleColumn:
      return tr("Visible");
    default:
      return QString::fromUtf8(
          m_columns[static_cast<std::size_t>(section - FirstPropertyColumn)].GetSecond().GetText());
  }
}

QHash<int, QByteArray> GuiTreeItemModel::roleNames() const
{
  QHash<int, QByteArray> names = QAbstractItemModel::roleNames();
  names.insert({{TypeIconRole, "typeIcon"},
                {VisibleStateRole, "visibleState"},
                {ComparedRole, "compared"},
                {IssueRole, "issue"},
                {AssociatedRole, "associated"},
                {SelectedRole, "selected"},
                {PlaceholderRole, "placeholder"}});
  return names;
}

void GuiTreeItemModel::UpdateVisAndTypeIconChanges(const VisibleMap* /*visibleMap*/, const ChangeMap* visibleChangeMap,
                                                   guitree::TypeIconMap* /*typeIconMap*/,
                                                   const ChangeMap* typeIconChangeMap)
{
  for (const ChangeMap* changes : {visibleChangeMap, typeIconChangeMap}) {
    if (!changes) {
      continue;
    }
    for (const auto& change : *changes) {
      _NoteChanged(m_rows->Find(change.first));
    }
  }
  _Settle();
}

void GuiTreeItemModel::UpdateVisAndTypeIcons(const VisibleMap* /*visibleMap*/, guitree::TypeIconMap* /*typeIconMap*/)
{
  _NoteAllChanged();
  _Settle();
}

bool GuiTreeItemModel::CheckAndUpdateNodeNameAndType(const du::SmartPtr<zelk::BaseInstance>& instance)
{
  _NoteChanged(m_rows->Find(instance.Get()));
  _Settle();
  return false;
}

void GuiTreeItemModel::UpdateNodeNames()
{
  _NoteAllChanged();
  _Settle();
}

void GuiTreeItemModel::UpdateDisplayNames()
{
  _NoteAllChanged();
  _Settle();
}

bool GuiTreeItemModel::SetAssocHlight(zelk::BaseInstance* instance, bool on)
{
  const RowId row = m_rows->Find(instance);
  if (row == RowTable::s_none) {
    return false;
  }
  if (m_rows->Has(row, RowTable::HasHighlight) != on) {
    m_rows->Set(row, RowTable::HasHighlight, on);
    _NoteChanged(row);
    _Settle();
  }
  return true;
}

void GuiTreeItemModel::_NoteChanged(RowId row)
{
  if (row != RowTable::s_none && !m_haveAllChanged && !m_isResetting) {
    m_changed.push_back(row);
  }
}

void GuiTreeItemModel::_NoteAllChanged()
{
  m_haveAllChanged = !m_isResetting;
  m_changed.clear();
}

void GuiTreeItemModel::_TellChanges()
{
  const std::vector<RowId> changed = std::exchange(m_changed, {});
  const std::vector<Range> ranges = _FindRanges(changed);
  const std::size_t topmost = m_rows->GetChildCount(RowTable::s_top);
  if (std::exchange(m_haveAllChanged, false) || ranges.size() > s_mostRanges) {
    if (topmost > 0) {
      Q_EMIT dataChanged(index(0, 0), index(static_cast<int>(topmost) - 1, columnCount() - 1));
      Q_EMIT LooksChanged();
    }
    return;
  }
  for (const Range& range : ranges) {
    const QModelIndex above = _MakeIndex(range.parent);
    Q_EMIT dataChanged(index(range.first, 0, above), index(range.last, columnCount() - 1, above));
  }
}

}  // namespace qthost
