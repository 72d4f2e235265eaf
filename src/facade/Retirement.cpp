#include "facade/Retirement.h"

#include <utility>
#include <vector>

namespace guitree {
namespace {

std::vector<std::shared_ptr<const void>>& GetRetired()
{
  static thread_local std::vector<std::shared_ptr<const void>> s_retired;
  return s_retired;
}

}  // namespace

thread_local constinit int Retirement::s_operations = 0;

Retirement::~Retirement()
{
  if (--s_operations == 0 && !GetRetired().empty()) {
    // Taken out first: the end of an object may be an operation again.
    const auto ending = std::exchange(GetRetired(), {});
  }
}

void Retirement::Retire(std::shared_ptr<const void> object)
{
  if (s_operations > 0) {
    GetRetired().push_back(std::move(object));
  }
}

}  // namespace guitree
