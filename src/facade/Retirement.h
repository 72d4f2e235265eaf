#pragma once

#include <memory>

namespace guitree {

/// Keeps what is out of use, but may still be referred to by an operation of the library that is under way on this
/// thread, until the outermost such operation has returned. An operation is under way for as long as its `Pin`.
class Retirement {
public:
  Retirement() { ++s_operations; }
  ~Retirement();
  Retirement(const Retirement&) = delete;
  Retirement& operator=(const Retirement&) = delete;

  /// Ends the object when the outermost operation does; at once while there is none.
  static void Retire(std::shared_ptr<const void> object);

private:
  static thread_local constinit int s_operations;
};

}  // namespace guitree
