#include "memkernel/Instance.h"

#include <set>
#include <utility>

#include "TreeFixture.h"
#include "zelk/BaseInstanceDynamicPropertiesCache.h"

namespace memkerneltest {
namespace {

using memkernel::Instance;

const du::Symbol& Dynamic()
{
  return zelk::BaseInstanceDynamicPropertiesCache::s_GroupName;
}

class InstanceTest : public TreeFixture {};

TEST_F(InstanceTest, Keys_OfAllInstances_AreDifferentPairs)
{
  const auto bolt = MakeProduct("Bolt");
  const auto otherBolt = MakeProduct("Bolt");
  const auto taken = tree->CreateProduct({.name = "Nut", .key = "Bolt#2"});
  std::set<std::pair<std::string, std::string>> keys;
  for (const auto& product : {bolt, otherBolt, taken, bolt, otherBolt, taken, MakeProduct(""), MakeProduct("")}) {
    const auto instance = tree->AddChild(root, product);
    keys.emplace(instance->GetInstanceKey(), instance->GetInstanceSubKey());
  }

  EXPECT_EQ(keys.size(), 8U);
  EXPECT_EQ(bolt->GetKey(), "Bolt");
  EXPECT_EQ(otherBolt->GetName(), "Bolt");
}

TEST_F(InstanceTest, SubKey_OfARemovedInstance_IsNotGivenAgain)
{
  const auto bolt = MakeProduct("Bolt");
  const auto first = tree->AddChild(root, bolt);
  EXPECT_EQ(first->GetInstanceSubKey(), "1");
  tree->Remove(first);

  EXPECT_EQ(tree->AddChild(root, bolt)->GetInstanceSubKey(), "2");
}

TEST_F(InstanceTest, PartId_OfTheRoot_IsTheRootsAlone)
{
  const auto pretender = tree->CreateProduct({.name = "P", .partId = Instance::ROOT_INSTANCE_ID});
  const auto a = tree->AddChild(root, pretender);

  EXPECT_EQ(GetText(root, Dynamic(), "Part ID"), Instance::ROOT_INSTANCE_ID);
  EXPECT_NE(GetText(a, Dynamic(), "Part ID"), Instance::ROOT_INSTANCE_ID);
  EXPECT_FALSE(tree->SetProperty(a, Dynamic(), "Part ID", Instance::ROOT_INSTANCE_ID));
}

TEST_F(InstanceTest, PartId_ComesFromTheInstanceThenItsProductThenItsKeys)
{
  const auto numbered = tree->CreateProduct({.name = "N", .partId = "4711"});
  const auto a = tree->AddChild(root, numbered);
  const auto b = Add(root, "B");

  EXPECT_EQ(GetText(a, Dynamic(), "Part ID"), "4711");
  EXPECT_EQ(GetText(b, Dynamic(), "Part ID"), "B/1");
  EXPECT_TRUE(tree->SetProperty(a, Dynamic(), "Part ID", "4712"));
  EXPECT_EQ(GetText(a, Dynamic(), "Part ID"), "4712");

  du::SmartPtr<zelk::PropertyValue> value;
  du::Symbol symbol;
  b->GetPropertyValue(value, Dynamic(), "Part ID", {});
  value->GetValueAsSymbol(symbol);
  EXPECT_EQ(symbol, "B/1");
}

TEST_F(InstanceTest, DisplayName_IsTheNameAndCannotBeSetAsAProperty)
{
  const auto a = Add(root, "A");

  EXPECT_EQ(GetText(a, Dynamic(), "Display Name"), "A");
  EXPECT_FALSE(tree->SetProperty(a, Dynamic(), "Display Name", "B"));
  tree->Rename(a, "C");
  EXPECT_EQ(GetText(a, Dynamic(), "Display Name"), "C");
}

TEST_F(InstanceTest, GetPropertyValue_PrefersTheInstanceToItsProductAndFallsBack)
{
  memkernel::PropertyTable properties;
  properties.Set("STEP", "Layer", "L1");
  properties.Set("STEP", "Colour", "red");
  properties.Set("Other", "Layer", "X");
  const auto product = tree->CreateProduct({.name = "A", .properties = properties});
  const auto a = tree->AddChild(root, product);
  const auto b = tree->AddChild(root, product);

  EXPECT_TRUE(tree->SetProperty(a, "STEP", "Layer", "L2"));
  EXPECT_TRUE(tree->SetProperty(a, "STEP", "Colour", ""));

  EXPECT_EQ(GetText(a, "STEP", "Layer"), "L2");
  EXPECT_EQ(GetText(a, "STEP", "Colour"), "");
  EXPECT_EQ(GetText(a, "Other", "Layer"), "X");
  EXPECT_EQ(GetText(b, "STEP", "Layer"), "L1");
  EXPECT_EQ(GetText(b, "STEP", "Weight"), "null");
  EXPECT_EQ(GetText(b, "STEP", "Weight", "unknown"), "unknown");

  EXPECT_TRUE(tree->RemoveProperty(a, "STEP", "Layer"));
  EXPECT_FALSE(tree->RemoveProperty(a, "STEP", "Layer"));
  EXPECT_EQ(GetText(a, "STEP", "Layer"), "L1");
}

TEST_F(InstanceTest, SetProductProperty_HoldsForAllInstances)
{
  const auto product = MakeProduct("A");
  const auto a = tree->AddChild(root, product);

  EXPECT_TRUE(tree->SetProductProperty(product, "STEP", "Layer", "L1"));
  EXPECT_TRUE(tree->SetProductProperty(product, "STEP", "Layer", "L2"));
  EXPECT_FALSE(tree->SetProductProperty(product, Dynamic(), "Part ID", "1"));

  EXPECT_EQ(GetText(a, "STEP", "Layer"), "L2");
}

TEST_F(InstanceTest, GetBaseNextSibling_IntoItsOwnHolder_WalksTheChildren)
{
  Add(root, "A");
  Add(root, "B");
  std::string names;
  du::SmartPtr<zelk::BaseInstance> child;
  root->GetBaseFirstChild(child);

  while (child) {
    names += NameOf(child);
    child->GetBaseNextSibling(child);
  }

  EXPECT_EQ(names, "AB");
}

TEST_F(InstanceTest, GetBaseNextSibling_OfAnInstanceThatOnlyItsHolderKeeps_IsSafe)
{
  du::SmartPtr<zelk::BaseInstance> child = Add(root, "A");
  tree->Remove(du::DynamicCast<Instance>(child));

  child->GetBaseNextSibling(child);

  EXPECT_FALSE(child);
}

TEST_F(InstanceTest, Children_OfARemovedInstance_OutliveIt)
{
  auto a = Add(root, "A");
  const auto b = Add(a, "B");
  const auto c = Add(b, "C");
  tree->Remove(a);

  a.Reset();

  du::SmartPtr<zelk::BaseInstance> parent = root;
  b->GetBaseParent(parent);
  EXPECT_FALSE(parent);
  EXPECT_EQ(Draw(b), "B(C)");
}

TEST_F(InstanceTest, HasNoneBodyChildren_LooksForAChildThatIsNoBody)
{
  const auto part = Add(root, "Part");
  EXPECT_FALSE(part->HasNoneBodyChildren());

  Add(part, "Body", memkernel::InstanceBody | memkernel::InstanceBodyType);
  EXPECT_FALSE(part->HasNoneBodyChildren());

  Add(part, "Other");
  EXPECT_TRUE(part->HasNoneBodyChildren());
}

TEST_F(InstanceTest, Flags_OfTheProduct_AreThoseOfItsInstances)
{
  using namespace memkernel;  // NOLINT(google-build-using-namespace): the flags are many
  const auto shape = du::MakeSmart<memkernel::Shape>(nullptr);
  const auto solid = tree->AddChild(root, tree->CreateProduct({.name = "S", .shape = shape}));
  const auto all = Add(root, "A", InstanceAllFlags & ~(InstanceProxyExpandFailed | InstanceShapeSource));
  const auto plain = Add(root, "P");

  EXPECT_TRUE(solid->HasShapeSource());
  EXPECT_FALSE(all->HasShapeSource());
  EXPECT_TRUE(all->IsBodyInstance() && all->IsBodyTypeInstance() && all->IsConstructionBodyTypeInstance());
  EXPECT_TRUE(all->HasThumbnailSource() && all->Is3dSymbol() && all->IsRootContainerRoot());
  EXPECT_TRUE(all->IsProxy() && all->IsProxyExpanded() && all->IsPlainIconInstance());
  EXPECT_FALSE(all->HasProxyExpandFailed());
  EXPECT_EQ(plain->GetFlags(), 0U);
}

TEST_F(InstanceTest, Anchor_ComesFromTheInstanceElseFromItsProduct)
{
  const auto common = du::MakeSmart<zelk::Anchor>();
  const auto own = du::MakeSmart<zelk::Anchor>();
  const auto product = tree->CreateProduct({.name = "A", .anchor = common});
  const auto a = tree->AddChild(root, product);
  const auto b = tree->AddChild(root, product);
  tree->SetAnchor(b, own);

  du::SmartPtr<zelk::Anchor> found;
  a->GetAnchor(found);
  EXPECT_EQ(found, common);
  b->GetAnchor(found);
  EXPECT_EQ(found, own);
  root->GetAnchor(found);
  EXPECT_FALSE(found);
}

}  // namespace
}  // namespace memkerneltest
