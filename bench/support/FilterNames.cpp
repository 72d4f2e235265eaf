#include "support/FilterNames.h"

#include <string_view>
#include <unordered_set>

#include "memkernel/Instance.h"
#include "memkernel/Product.h"
#include "support/Walk.h"

namespace bench {
namespace {

/// Of a hundred products that are met one after the other one is a nut, and thirty are bolts.
std::string_view ChooseKind(std::size_t number)
{
  if (number % 100 == 0) {
    return " Nut";
  }
  return number % 10 >= 1 && number % 10 <= 3 ? " Bolt" : " Plate";
}

}  // namespace

const std::vector<FilterText>& GetFilterTexts()
{
  static const std::vector<FilterText> s_texts{{"none", "gasket"}, {"1%", "nut"}, {"30%", "bolt"}, {"all", "item"}};
  return s_texts;
}

void GiveFilterNames(memkernel::Tree& tree)
{
  std::unordered_set<const memkernel::Product*> known;
  std::vector<du::SmartPtr<memkernel::Product>> products;
  WalkDepthFirst(tree, [&](const zelk::BaseInstance& instance, std::size_t /*depth*/) {
    const auto product = dynamic_cast<const memkernel::Instance&>(instance).GetProduct();
    if (known.insert(product.Get()).second) {
      products.push_back(product);
    }
  });
  const memkernel::TreeBatch batch(tree);
  for (std::size_t number = 0; number < products.size(); ++number) {
    const std::string name = std::string("Item ").append(std::to_string(number)).append(ChooseKind(number));
    tree.RenameProduct(products[number], du::Symbol(std::string_view(name)));
  }
}

}  // namespace bench
