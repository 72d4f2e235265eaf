#include <memory>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QString>
#include <QVariant>

#include "peers/LeanModel.h"
#include "peers/Peers.h"
#include "peers/QtModels.h"
#include "support/Walk.h"

namespace bench {
namespace {

/// The display names of a tree. Instances of one name share one string.
struct Texts {
  /// In the order of a walk.
  std::vector<QString> inOrder;
  /// By the text of the name.
  std::unordered_map<const char*, QString> known;
};

std::shared_ptr<const Texts> MakeTexts(const zelk::BaseTree& tree)
{
  auto texts = std::make_shared<Texts>();
  WalkDepthFirst(tree, [&](const zelk::BaseInstance& instance, std::size_t /*depth*/) {
    const du::Symbol name = instance.GetObjectName();
    QString& text = texts->known[name.GetText()];
    if (text.isNull()) {
      text = QString::fromUtf8(name.GetText());
    }
    texts->inOrder.push_back(text);
  });
  return texts;
}

/// Reads each row once, as a view does that is expanded everywhere.
std::size_t ReadModel(const QAbstractItemModel& model)
{
  std::size_t count = 0;
  std::vector<QModelIndex> open{QModelIndex()};
  while (!open.empty()) {
    const QModelIndex parent = open.back();
    open.pop_back();
    for (int row = model.rowCount(parent) - 1; row >= 0; --row) {
      const QModelIndex index = model.index(row, 0, parent);
      const bool isRead = !model.data(index, Qt::DisplayRole).toString().isEmpty() && model.parent(index) == parent;
      count += isRead ? 1 : 0;
      open.push_back(index);
    }
  }
  return count;
}

void FillLeanModel(const zelk::BaseTree& tree, const Texts& texts, LeanModel& model)
{
  model.Reserve(texts.inOrder.size());
  auto text = texts.inOrder.begin();
  WalkDepthFirst(tree,
                 [&](const zelk::BaseInstance& /*instance*/, std::size_t depth) { model.Append(*text++, depth); });
  model.Finish();
}

class QtPeer : public Peer {
public:
  QtPeer(const zelk::BaseTree& tree, std::shared_ptr<const Texts> texts) : m_tree(tree), m_texts(std::move(texts)) {}

protected:
  const zelk::BaseTree& m_tree;
  const std::shared_ptr<const Texts> m_texts;
};

class StandardItems final : public QtPeer {
public:
  using QtPeer::QtPeer;

  std::string GetName() const override { return "qstandard"; }
  void Fill() override
  {
    m_model.emplace();
    std::vector<QStandardItem*> path{m_model->invisibleRootItem()};
    auto text = m_texts->inOrder.begin();
    WalkDepthFirst(m_tree, [&](const zelk::BaseInstance& /*instance*/, std::size_t depth) {
      path.resize(depth + 1);
      auto* item = new QStandardItem(*text++);
      path.back()->appendRow(item);
      path.push_back(item);
    });
  }
  std::size_t ReadAll() const override { return ReadModel(*m_model); }
  void Clear() override { m_model.reset(); }

private:
  std::optional<QStandardItemModel> m_model;
};

class LeanRows final : public QtPeer {
public:
  using QtPeer::QtPeer;

  std::string GetName() const override { return "lean"; }
  void Fill() override { FillLeanModel(m_tree, *m_texts, m_model.emplace()); }
  std::size_t ReadAll() const override { return ReadModel(*m_model); }
  void Clear() override { m_model.reset(); }

private:
  std::optional<LeanModel> m_model;
};

/// The filter that Qt offers, over the leanest model. A fresh one each time: under an old one a new filter costs what
/// it takes out and puts in row by row as well.
class RecursiveProxy final : public FilterPeer {
public:
  explicit RecursiveProxy(const zelk::BaseTree& tree) { FillLeanModel(tree, *MakeTexts(tree), m_model); }

  std::string GetName() const override { return "proxy"; }
  void Filter(const std::string& text) override
  {
    m_proxy.emplace();
    m_proxy->setRecursiveFilteringEnabled(true);
    m_proxy->setFilterCaseSensitivity(Qt::CaseInsensitive);
    m_proxy->setFilterFixedString(QString::fromStdString(text));
    m_proxy->setSourceModel(&m_model);
    m_rows = ReadModel(*m_proxy);
  }
  std::size_t GetRowCount() const override { return m_rows; }
  void Clear() override { m_proxy.reset(); }

private:
  LeanModel m_model;
  std::optional<QSortFilterProxyModel> m_proxy;
  std::size_t m_rows = 0;
};

/// Fills `model` with the rows of the tree; answers the last row of the first half of the walk that has children.
QStandardItem* FillStandardItems(const zelk::BaseTree& tree, const Texts& texts, QStandardItemModel& model)
{
  std::vector<QStandardItem*> path{model.invisibleRootItem()};
  std::size_t walked = 0;
  QStandardItem* assembly = nullptr;
  WalkDepthFirst(tree, [&](const zelk::BaseInstance& instance, std::size_t depth) {
    path.resize(depth + 1);
    auto* item = new QStandardItem(texts.inOrder[walked]);
    path.back()->appendRow(item);
    path.push_back(item);
    ++walked;
    if (walked <= texts.inOrder.size() / 2 && instance.HasChildren()) {
      assembly = item;
    }
  });
  return assembly;
}

/// What a Qt panel does that filters: the model behind a proxy which keeps the ancestors of a match. Every row that
/// passes has been read, as by a view that is expanded everywhere.
class FilterProxy final : public InsertionPeer {
public:
  FilterProxy(const zelk::BaseTree& tree, std::string name, const QString& filter)
      : m_name(std::move(name)), m_parent(FillStandardItems(tree, *MakeTexts(tree), m_model))
  {
    m_proxy.setRecursiveFilteringEnabled(true);
    m_proxy.setFilterFixedString(filter);
    m_rowsBefore = m_parent->rowCount();
    Attach();
    // Not asked of the proxy: it maps a hidden parent then, and does not show it any more when it should.
    for (int row = 0; row < m_rowsBefore; ++row) {
      m_shownBefore += m_parent->child(row)->text().contains(filter) ? 1 : 0;
    }
  }

  std::string GetName() const override { return m_name; }
  void Insert(std::size_t rows) override
  {
    for (std::size_t i = 0; i < rows; ++i) {
      // The row comes with its text, which a filter that has to show the ancestors looks at.
      m_parent->insertRows(m_parent->rowCount(), {new QStandardItem("New part")});
    }
  }
  std::size_t TakeBack() override
  {
    const int shown = CountShownChildren() - m_shownBefore;
    // From the start again: the proxy keeps ancestors that have lost their last match, and does not show the next one.
    m_proxy.setSourceModel(nullptr);
    m_parent->removeRows(m_rowsBefore, m_parent->rowCount() - m_rowsBefore);
    Attach();
    return static_cast<std::size_t>(shown);
  }

private:
  void Attach()
  {
    m_proxy.setSourceModel(&m_model);
    ReadModel(m_proxy);
  }
  [[nodiscard]] int CountShownChildren() const
  {
    const QModelIndex parent = m_proxy.mapFromSource(m_parent->index());
    return parent.isValid() ? m_proxy.rowCount(parent) : 0;
  }

  const std::string m_name;
  QStandardItemModel m_model;
  QStandardItem* const m_parent;
  QSortFilterProxyModel m_proxy;
  int m_rowsBefore = 0;
  int m_shownBefore = 0;
};

}  // namespace

std::vector<std::unique_ptr<InsertionPeer>> MakeInsertionPeers(const zelk::BaseTree& tree, bool withHiddenBranch)
{
  std::vector<std::unique_ptr<InsertionPeer>> peers;
  peers.push_back(std::make_unique<FilterProxy>(tree, "proxy", "art"));
  // Nothing is shown before the insertion, which brings the ancestors.
  if (withHiddenBranch) {
    peers.push_back(std::make_unique<FilterProxy>(tree, "rare", "New part"));
  }
  return peers;
}

std::vector<std::unique_ptr<FilterPeer>> MakeFilterPeers(const zelk::BaseTree& tree)
{
  std::vector<std::unique_ptr<FilterPeer>> peers;
  peers.push_back(std::make_unique<RecursiveProxy>(tree));
  return peers;
}

std::unique_ptr<QAbstractItemModel> MakeLeanModel(const zelk::BaseTree& tree)
{
  auto model = std::make_unique<LeanModel>();
  FillLeanModel(tree, *MakeTexts(tree), *model);
  return model;
}

std::vector<std::unique_ptr<Peer>> MakePeers(const zelk::BaseTree& tree)
{
  const std::shared_ptr<const Texts> texts = MakeTexts(tree);
  std::vector<std::unique_ptr<Peer>> peers;
  peers.push_back(std::make_unique<StandardItems>(tree, texts));
  peers.push_back(std::make_unique<LeanRows>(tree, texts));
  return peers;
}

}  // namespace bench
