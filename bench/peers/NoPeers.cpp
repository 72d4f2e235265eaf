#include "peers/Peers.h"

namespace bench {

std::vector<std::unique_ptr<Peer>> MakePeers(const zelk::BaseTree& /*tree*/)
{
  return {};
}

std::vector<std::unique_ptr<FilterPeer>> MakeFilterPeers(const zelk::BaseTree& /*tree*/)
{
  return {};
}

std::vector<std::unique_ptr<InsertionPeer>> MakeInsertionPeers(const zelk::BaseTree& /*tree*/,
                                                               bool /*withHiddenBranch*/)
{
  return {};
}

}  // namespace bench
