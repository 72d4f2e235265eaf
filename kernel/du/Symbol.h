#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace du {

/// An interned, immutable name: two symbols of the same text are the same symbol, and comparing them compares one
/// pointer. Texts are kept for the life of the process. Symbols may be made in any thread and before `main`; making
/// one from a text takes a short lock, copying, comparing and reading one takes none.
class Symbol {
public:
  /// The symbol without text. Its `GetText` is null, and it counts as no value.
  static const Symbol EMPTY;

  constexpr Symbol() noexcept = default;
  /// A null pointer and an empty text both give `EMPTY`.
  Symbol(const char* text);  // NOLINT(google-explicit-constructor): texts are the usual way to name a symbol
  explicit Symbol(std::string_view text);

  /// The interned text, null for `EMPTY`. Two symbols are one exactly if these addresses are.
  [[nodiscard]] const char* GetText() const noexcept { return m_text ? m_text->c_str() : nullptr; }
  [[nodiscard]] std::string_view GetView() const noexcept
  {
    return m_text ? std::string_view(*m_text) : std::string_view();
  }
  [[nodiscard]] bool IsEmpty() const noexcept { return m_text == nullptr; }

  // NOLINTNEXTLINE(google-explicit-constructor): a symbol goes wherever a text is wanted
  operator std::string() const { return std::string(GetView()); }

  /// Identity.
  friend bool operator==(const Symbol& a, const Symbol& b) noexcept { return a.m_text == b.m_text; }
  /// Text, without interning it. A null pointer equals `EMPTY`.
  friend bool operator==(const Symbol& a, const char* b) noexcept
  {
    return a.GetView() == (b ? std::string_view(b) : std::string_view());
  }
  friend bool operator==(const Symbol& a, const std::string& b) noexcept { return a.GetView() == b; }
  /// The order of addresses: stable within a process, without meaning outside of it.
  friend bool operator<(const Symbol& a, const Symbol& b) noexcept;

private:
  const std::string* m_text = nullptr;
};

inline constinit const Symbol Symbol::EMPTY{};

}  // namespace du
