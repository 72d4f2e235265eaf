#pragma once

#include <atomic>

#include "memkernel/Shape.h"
#include "zelk/ShapeInstance.h"

namespace memkernel {

class ShapeSceneContent;

/// The presence of an instance in a scene. Made and changed by its scene; read in any thread.
class ShapeInstance final : public zelk::ShapeInstance {
public:
  ~ShapeInstance() override;

  void GetInstance(du::SmartPtr<zelk::Instance>& out) const override;
  void GetShape(du::SmartPtr<zelk::Shape>& out) const override;
  /// Its own status where one was set, else that of its shape. `ShapeDataNone` without a shape, and for any other data
  /// than 1.
  [[nodiscard]] unsigned short GetShapeDataStatus(unsigned short what) const override;
  [[nodiscard]] bool HasRejectedCopyrights() const override;
  [[nodiscard]] bool IsCompared() const override;
  [[nodiscard]] bool IsComparedFirstItem() const override;
  [[nodiscard]] bool IsThumbnail() const override;
  [[nodiscard]] bool IsVisible() const override;

private:
  friend class ShapeSceneContent;

  enum Bit : unsigned int {
    Visible = 1U << 0U,
    Thumbnail = 1U << 1U,
    Compared = 1U << 2U,
    ComparedFirst = 1U << 3U,
    RejectedCopyrights = 1U << 4U,
    /// The scene has let go of it, and has told so.
    Gone = 1U << 5U,
  };
  static constexpr unsigned short s_asShape = 0xffff;

  ShapeInstance(const du::SmartPtr<zelk::Instance>& instance, const du::SmartPtr<Shape>& shape, unsigned int bits);

  [[nodiscard]] bool _Has(Bit bit) const noexcept { return (m_bits.load(std::memory_order_acquire) & bit) != 0; }
  /// Answers whether the bit was different.
  bool _Set(Bit bit, bool on) noexcept;

  const du::SmartPtr<zelk::Instance> m_instance;
  const du::SmartPtr<Shape> m_shape;
  std::atomic<unsigned int> m_bits;
  std::atomic<unsigned short> m_ownStatus{s_asShape};
};

}  // namespace memkernel
