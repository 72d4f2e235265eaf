#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "memkernel/World.h"
#include "stepimport/Import.h"

namespace stepimporttest {

/// Notes how it ends.
class LoadEvent final : public zelloader::ShapeLoaderEvent {
public:
  static constexpr int UnderWay = -1;

  /// One of the statuses of `zelk::BaseAsyncEvent` and `memkernel::Loader`.
  int end = UnderWay;

protected:
  void OnComplete(unsigned short status) override { end = status; }
};

/// A kernel with two workers into which files are read, and whose loader is asked for their shapes.
class LoadStage : public testing::Test {
protected:
  using Shape = du::SmartPtr<memkernel::Shape>;

  ~LoadStage() override { world->Shutdown(); }

  void Read(const std::filesystem::path& file)
  {
    read = stepimport::Import(file, world->GetMemTree(), {}, nullptr);
    ASSERT_TRUE(read.ok) << read.error;
  }
  /// Of each instance of the tree that has one, parents first.
  [[nodiscard]] std::vector<Shape> GetShapes() const
  {
    std::vector<Shape> shapes;
    _AddShapes(read.instance, shapes);
    return shapes;
  }
  /// Of the first instance of this name.
  [[nodiscard]] Shape GetShape(const std::string& name) const { return _FindShape(read.instance, name); }
  du::SmartPtr<LoadEvent> Ask(const Shape& shape)
  {
    auto event = du::MakeSmart<LoadEvent>();
    host->ManageObject(event);
    world->GetMemLoader().LoadShape(shape, du::Flags(zelloader::Loader::LoadGeometry), event.Get(), nullptr);
    return event;
  }
  void RunUntilEnd(const du::SmartPtr<LoadEvent>& event)
  {
    world->GetLoop().RunUntil([&] { return event->end != LoadEvent::UnderWay; });
  }
  void Load(const Shape& shape) { RunUntilEnd(Ask(shape)); }

  const du::SmartPtr<memkernel::World> world = du::MakeSmart<memkernel::World>(3U);
  const du::SmartPtr<dom::ManagedObject> host = world->CreateManagedObject();
  stepimport::ImportResult read;

private:
  static void _AddShapes(const du::SmartPtr<zelk::BaseInstance>& top, std::vector<Shape>& shapes)
  {
    const auto instance = du::DynamicCast<memkernel::Instance>(top);
    if (const Shape& shape = instance->GetProduct()->GetShape()) {
      shapes.push_back(shape);
    }
    du::SmartPtr<zelk::BaseInstance> child;
    for (top->GetBaseFirstChild(child); child; child->GetBaseNextSibling(child)) {
      _AddShapes(child, shapes);
    }
  }
  static Shape _FindShape(const du::SmartPtr<zelk::BaseInstance>& top, const std::string& name)
  {
    if (std::string(top->GetObjectName()) == name) {
      return du::DynamicCast<memkernel::Instance>(top)->GetProduct()->GetShape();
    }
    du::SmartPtr<zelk::BaseInstance> child;
    Shape found;
    for (top->GetBaseFirstChild(child); child && !found; child->GetBaseNextSibling(child)) {
      found = _FindShape(child, name);
    }
    return found;
  }
};

}  // namespace stepimporttest
