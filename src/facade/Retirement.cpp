#include "facade/Retirement.h"

#include <utility>
#include <vector>

namespace guitree {
namespace {

using Objects = std::vector<std::shared_ptr<const void>>;

/// Null while there is nothing. Owned, and no object with a destructor: a panel may end after those of its thread.
thread_local constinit Objects* s_retired = nullptr;

}  // namespace

thread_local constinit int Retirement::s_operations = 0;

Retirement::~Retirement()
{
  if (--s_operations == 0 && s_retired) {
    // Taken out first: the end of an object may be an operation again.
    const std::unique_ptr<Objects> ending(std::exchange(s_retired, nullptr));
  }
}

void Retirement::Retire(std::shared_ptr<const void> object)
{
  if (s_operations == 0) {
    return;
  }
  if (!s_retired) {
    s_retired = std::make_unique<Objects>().release();
  }
  s_retired->push_back(std::move(object));
}

}  // namespace guitree
