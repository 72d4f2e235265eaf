#include <memory>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

#include <QStandardItemModel>
#include <QString>
#include <QVariant>

#include "peers/LeanModel.h"
#include "peers/Peers.h"
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
  void Fill() override
  {
    m_model.emplace();
    m_model->Reserve(m_texts->inOrder.size());
    auto text = m_texts->inOrder.begin();
    WalkDepthFirst(m_tree,
                   [&](const zelk::BaseInstance& /*instance*/, std::size_t depth) { m_model->Append(*text++, depth); });
    m_model->Finish();
  }
  std::size_t ReadAll() const override { return ReadModel(*m_model); }
  void Clear() override { m_model.reset(); }

private:
  std::optional<LeanModel> m_model;
};

}  // namespace

std::vector<std::unique_ptr<Peer>> MakePeers(const zelk::BaseTree& tree)
{
  const std::shared_ptr<const Texts> texts = MakeTexts(tree);
  std::vector<std::unique_ptr<Peer>> peers;
  peers.push_back(std::make_unique<StandardItems>(tree, texts));
  peers.push_back(std::make_unique<LeanRows>(tree, texts));
  return peers;
}

}  // namespace bench
