// The item model as a host of a whole panel on a whole kernel, through any events: it must show what the panel must.
//
// GUITREE_SYSTEM_SEED is the first seed in place of 1, GUITREE_SYSTEM_STEPS another number of events.

#include <gtest/gtest.h>

#include <map>

#include <QAbstractItemModelTester>
#include <QTreeView>

#include "Report.h"
#include "Variables.h"
#include "guitree/TreeStateBase.h"
#include "qthost/GuiTreeItemModel.h"
#include "qthost/SelectionBinding.h"
#include "qthost/TreeViewKeeper.h"

namespace qthosttest {
namespace {

using qthost::GuiTreeItemModel;

/// The model under a strict tester, in a view with all that belongs to it. What the view has selected must be what the
/// model was told, and how a row looks is read when the model says so and at no other time.
class ModelHost final : public systemtest::SecondHost {
public:
  ModelHost()
  {
    m_tester.setUseFetchMore(false);
    m_view.setModel(&m_model);
    m_view.setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_view.show();
    // The view owns them.
    std::make_unique<qthost::TreeViewKeeper>(m_view, m_model).release();
    std::make_unique<qthost::SelectionBinding>(m_view, m_model).release();
    const auto readAll = [this] {
      m_looks.clear();
      ReadBelow({});
    };
    QObject::connect(&m_model, &QAbstractItemModel::modelReset, readAll);
    QObject::connect(&m_model, &GuiTreeItemModel::LooksChanged, readAll);
    QObject::connect(&m_model, &QAbstractItemModel::rowsInserted,
                     [this](const QModelIndex& parent, int first, int last) {
                       for (int row = first; row <= last; ++row) {
                         Read(m_model.index(row, 0, parent));
                         ReadBelow(m_model.index(row, 0, parent));
                       }
                     });
    QObject::connect(&m_model, &QAbstractItemModel::dataChanged,
                     [this](const QModelIndex& from, const QModelIndex& to) {
                       for (int row = from.row(); row <= to.row(); ++row) {
                         Read(from.siblingAtRow(row));
                       }
                     });
  }

  void SetPanel(guitree::GuiTree* panel) override { m_model.SetPanel(panel); }
  [[nodiscard]] guitree::GuiInterface& GetHost() override { return m_model; }
  [[nodiscard]] std::vector<std::string> ToText(systemtest::Rows& rows) const override
  {
    std::vector<std::string> text;
    AddText({}, "", rows, text);
    return text;
  }
  /// A result without a match does not tell of its placeholder.
  bool Open(zelk::BaseInstance& instance) override
  {
    const QModelIndex index = m_model.FindIndex(&instance);
    if (!index.data(GuiTreeItemModel::PlaceholderRole).toBool()) {
      return m_model.GetPanel()->GetTreeState()->ExpandFilterNode({&instance});
    }
    m_model.fetchMore(index);
    return !m_model.canFetchMore(m_model.FindIndex(&instance));
  }

private:
  /// What a view has painted of a row.
  struct Look {
    std::string name;
    int state = 0;
    int icon = 0;
  };

  [[nodiscard]] static Look ReadLook(const QModelIndex& index)
  {
    return {index.data().toString().toStdString(), index.data(GuiTreeItemModel::VisibleStateRole).toInt(),
            index.data(GuiTreeItemModel::TypeIconRole).toInt()};
  }
  void Read(const QModelIndex& index) { m_looks[m_model.GetInstance(index).Get()] = ReadLook(index); }
  void ReadBelow(const QModelIndex& parent)
  {
    for (int row = 0; row < m_model.rowCount(parent); ++row) {
      Read(m_model.index(row, 0, parent));
      ReadBelow(m_model.index(row, 0, parent));
    }
  }
  void AddText(const QModelIndex& parent, const std::string& indent, systemtest::Rows& rows,
               std::vector<std::string>& out) const
  {
    for (int row = 0; row < m_model.rowCount(parent); ++row) {
      const QModelIndex index = m_model.index(row, 0, parent);
      out.push_back(indent + Describe(index, rows));
      AddText(index, indent + "  ", rows, out);
    }
  }
  /// As it was painted. Where that is what the row shows now, the other host may have been told of less.
  [[nodiscard]] Look TakeLook(const QModelIndex& index, systemtest::Rows& rows) const
  {
    const zelk::BaseInstance* const instance = m_model.GetInstance(index).Get();
    const Look now = ReadLook(index);
    Look look = m_looks.at(instance);
    if (const systemtest::Rows::Row* const told = rows.Find(instance)) {
      look.name = look.name == now.name ? told->name : look.name;
      look.state = look.state == now.state ? told->state : look.state;
      look.icon = look.icon == now.icon ? told->icon : look.icon;
    }
    return look;
  }
  [[nodiscard]] std::string Describe(const QModelIndex& index, systemtest::Rows& rows) const
  {
    const Look look = TakeLook(index, rows);
    std::string line = systemtest::Rows::NameOf(*m_model.GetInstance(index)) + " '" + look.name + "'";
    if (m_model.GetPanel()->GetCurrentLog()) {
      line += " state " + std::to_string(look.state) + " icon " + std::to_string(look.icon);
    }
    const bool isSelected = index.data(GuiTreeItemModel::SelectedRole).toBool();
    line += isSelected ? " selected" : "";
    line += isSelected == m_view.selectionModel()->isSelected(index) ? "" : " not as in the view";
    line += index.data(GuiTreeItemModel::AssociatedRole).toBool() ? " highlighted" : "";
    line += index.data(GuiTreeItemModel::PlaceholderRole).toBool() ? " ..." : "";
    return line;
  }

  GuiTreeItemModel m_model;
  QAbstractItemModelTester m_tester{&m_model, QAbstractItemModelTester::FailureReportingMode::Fatal};
  QTreeView m_view;
  std::map<const zelk::BaseInstance*, Look> m_looks;
};

class ItemModelSystem : public testing::TestWithParam<std::uint64_t> {};

TEST_P(ItemModelSystem, AfterAnyEventsAModelAndItsViewShowWhatTheyMust)
{
  const std::uint64_t seed = systemtest::ReadNumber("GUITREE_SYSTEM_SEED", 1) + GetParam();
  const systemtest::Events events = systemtest::MakeEvents(seed, systemtest::ReadNumber("GUITREE_SYSTEM_STEPS", 400));
  const systemtest::Stage::Options options{.losesRow = {},
                                           .makeSecondHost = [] { return std::make_unique<ModelHost>(); }};

  const systemtest::Outcome outcome = systemtest::Play(events, options);

  if (!outcome.fault.empty()) {
    FAIL() << systemtest::Report(seed, events, options);
  }
  EXPECT_GT(outcome.checks, 1U);
}

INSTANTIATE_TEST_SUITE_P(OfSeeds, ItemModelSystem, testing::Range<std::uint64_t>(0, 6));

}  // namespace
}  // namespace qthosttest
