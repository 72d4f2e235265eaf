#include "du/Task.h"

namespace du {

Task::~Task() = default;

std::string Task::GetName() const
{
  return {};
}

float Task::GetPriority() const
{
  return 0.0F;
}

void Task::TaskComplete() {}

void Task::FlushResults() {}

void Task::Abort() {}

}  // namespace du
