#pragma once

#include <string>

#include "du/RefCounted.h"
#include "du/SmartPtr.h"
#include "du/Symbol.h"
#include "zelk/ClassType.h"

namespace zelk {

/// Base of the objects of the kernel that can be told apart by class at run time.
class Object : public virtual du::RefCounted {
public:
  static constexpr ClassType CLASS_TYPE{ClassIdObject, "zelk::Object", nullptr};

  /// Whether the object is of this class or of one that derives from it. Any thread, as for the two below.
  [[nodiscard]] virtual bool IsATypeOf(const ClassType& type) const;
  /// The same by number; false for a number that no class has.
  [[nodiscard]] virtual bool IsATypeOfId(unsigned int id) const;

  /// The name of the object's class.
  [[nodiscard]] virtual std::string GetDebugClassName() const;
  [[nodiscard]] virtual std::string GetObjectDescription() const;
  [[nodiscard]] virtual du::Symbol GetObjectName() const;

  /// Data that clients hang on objects, for kernels that support it. The defaults keep nothing: reading gives null, and
  /// adding and removing give false.
  [[nodiscard]] virtual void* GetUserData(const du::Symbol& key) const;
  virtual bool AddUserData(const du::Symbol& key, void* data);
  virtual bool RemoveUserData(const du::Symbol& key);

  /// The object's own class; its bases follow along `ClassType::base`. Every class with a constant of its own overrides
  /// this.
  [[nodiscard]] virtual const ClassType& GetClassTypes() const;

  [[nodiscard]] virtual du::SmartPtr<du::RefCounted> GetRefCountedUserData(const du::Symbol& key) const;
  virtual bool AddRefCountedUserData(const du::Symbol& key, const du::SmartPtr<du::RefCounted>& data);
};

}  // namespace zelk
