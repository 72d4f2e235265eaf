#pragma once

#include <cstddef>
#include <vector>

#include "du/SmartPtr.h"
#include "du/Symbol.h"
#include "zelk/PropertyValue.h"

namespace memkernel {

/// A text as a property value. Immutable, so it may be read in any thread and shared by all that have the value.
class TextValue final : public zelk::PropertyValue {
public:
  explicit TextValue(const du::Symbol& text) : m_text(text) {}

  [[nodiscard]] const du::Symbol& GetText() const noexcept { return m_text; }
  void GetValueAsSymbol(du::Symbol& out) const override { out = m_text; }
  void GetValueAsString(std::string& out) const override { out = m_text.GetView(); }

private:
  du::Symbol m_text;
};

/// Properties told by group and name. A plain value; one thread at a time.
class PropertyTable {
public:
  /// Adds a property, or replaces its value. An empty value is a value.
  void Set(const du::Symbol& group, const du::Symbol& name, const du::Symbol& value);
  /// False if there is no such property.
  bool Remove(const du::Symbol& group, const du::Symbol& name);
  /// Null if there is no such property. Logarithmic cost.
  [[nodiscard]] const du::SmartPtr<TextValue>* Find(const du::Symbol& group, const du::Symbol& name) const;
  [[nodiscard]] std::size_t GetCount() const noexcept { return m_entries.size(); }

private:
  struct Entry {
    du::Symbol group;
    du::Symbol name;
    du::SmartPtr<TextValue> value;
  };

  [[nodiscard]] std::vector<Entry>::const_iterator _Find(const du::Symbol& group, const du::Symbol& name) const;

  /// Ordered by the symbols' own order, group first.
  std::vector<Entry> m_entries;
};

}  // namespace memkernel
