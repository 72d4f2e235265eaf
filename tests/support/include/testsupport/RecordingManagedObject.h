#pragma once

#include <vector>

#include "dom/ManagedObject.h"
#include "dom/Observer.h"

namespace testsupport {

/// A manager that manages nothing: it writes down whom it was given.
class RecordingManagedObject : public dom::ManagedObject {
public:
  struct Entry {
    /// An identity: the object may have gone.
    const dom::ManagedObject* object;
    /// Whether it stood in a list of observers already.
    bool wasRegistered;
  };

  std::vector<Entry> managed;

  bool ManageObject(const du::SmartPtr<dom::ManagedObject>& object) override
  {
    const auto* observer = dynamic_cast<const dom::Observer*>(object.Get());
    managed.push_back({object.Get(), observer && observer->IsRegistered()});
    return true;
  }
};

}  // namespace testsupport
