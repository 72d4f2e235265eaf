#pragma once

namespace dg {

/// A colour of four floats, each of range 0 to 1. The components are read directly.
class Color {
public:
  constexpr Color(float redPart, float greenPart, float bluePart, float alphaPart) noexcept
      : red(redPart), green(greenPart), blue(bluePart), alpha(alphaPart)
  {
  }

  /// The form that user interfaces write as `#RRGGBB`: red in the third byte, then green, then blue; the top byte is 0.
  /// Components outside the range are taken to its nearer end, and each is rounded.
  [[nodiscard]] unsigned int GetAsHexUI() const noexcept;

  friend constexpr bool operator==(const Color&, const Color&) noexcept = default;

  float red;
  float green;
  float blue;
  float alpha;
};

}  // namespace dg
