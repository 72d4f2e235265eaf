#include "StaticSymbols.h"

#include "zelk/BaseInstanceDynamicPropertiesCache.h"
#include "zelk/ComponentInstance.h"

namespace kerneltest {
namespace {

const du::Symbol s_early("made before main");
const du::Symbol s_empty = du::Symbol::EMPTY;
const bool s_wasEmptyWithoutText = du::Symbol::EMPTY.GetText() == nullptr;
const du::Symbol s_propertyGroup = zelk::BaseInstanceDynamicPropertiesCache::s_GroupName;
const du::Symbol s_rootId = zelk::ComponentInstance::ROOT_INSTANCE_ID;

}  // namespace

du::Symbol GetEarlySymbol()
{
  return s_early;
}

du::Symbol GetEarlyEmpty()
{
  return s_empty;
}

bool WasEmptyWithoutTextEarly()
{
  return s_wasEmptyWithoutText;
}

du::Symbol GetEarlyPropertyGroup()
{
  return s_propertyGroup;
}

du::Symbol GetEarlyRootId()
{
  return s_rootId;
}

}  // namespace kerneltest
