#include "PlainTreeState.h"

#include "guitree/GuiTree.h"
#include "guitree/SceneInfoLog.h"
#include "zelk/Instance.h"
#include "zelk/World.h"

namespace {

constexpr int s_iconPlain = 0;
constexpr int s_iconNoSource = 2;
constexpr int s_iconProxy = 6;
constexpr int s_iconProxyNoShapeSource = 8;
constexpr int s_iconProxyShape = 10;
constexpr int s_iconProxyExpandFailed = 16;

int GetProxyIcon(const zelk::Instance& instance)
{
  if (instance.HasProxyExpandFailed()) {
    return s_iconProxyExpandFailed;
  }
  if (instance.IsProxyExpanded()) {
    return instance.HasShapeSource() ? s_iconProxyShape : s_iconProxyNoShapeSource;
  }
  return s_iconProxy;
}

bool IsAnyProxy(const zelk::Instance& instance)
{
  return !instance.IsRootContainerRoot()
         && (instance.HasProxyExpandFailed() || instance.IsProxyExpanded() || instance.IsProxy());
}

}  // namespace

PlainTreeState::PlainTreeState(guitree::GuiTree& tree) : TreeStateBase(tree), m_filter("Plain") {}

du::SmartPtr<zelk::BaseTree> PlainTreeState::Initialise_GetZelkTree(const du::SmartPtr<zelk::View>& /*view*/)
{
  const auto world = zelk::World::GetWorld();
  return world ? du::SmartPtr<zelk::BaseTree>(world->tree) : nullptr;
}

du::SmartPtr<guitree::TreeSelectionController> PlainTreeState::GetSelController(bool /*forRows*/) const
{
  return {};
}

bool PlainTreeState::HasInstGotThumbnail(const du::SmartPtr<zelk::BaseInstance>& instance) const
{
  const auto part = du::DynamicCast<zelk::Instance>(instance);
  return part && part->HasThumbnailSource();
}

bool PlainTreeState::IsInstLoaded(const zelk::BaseInstance* /*instance*/)
{
  return false;
}

guitree::SceneInfoLog* PlainTreeState::CreateSceneInfoLog()
{
  return new guitree::SceneInfoLog(&GetGuiTree());
}

int PlainTreeState::GetUnloadedTypeIcon(const zelk::BaseInstance* instance, const du::SmartPtr<zelk::Scene>& /*scene*/)
{
  const auto* part = dynamic_cast<const zelk::Instance*>(instance);
  if (!part) {
    return s_iconPlain;
  }
  if (IsAnyProxy(*part)) {
    return GetProxyIcon(*part);
  }
  const bool hasSource = part->HasShapeSource() || part->HasThumbnailSource();
  return hasSource || part->IsPlainIconInstance() ? s_iconPlain : s_iconNoSource;
}

structure_utils::TreeFilterInfoBase& PlainTreeState::GetFilter(const du::SmartPtr<zelk::View>& /*view*/)
{
  return m_filter;
}
