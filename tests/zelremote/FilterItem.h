#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "FakeInstance.h"
#include "zelk/PropertyValue.h"

namespace filtertest {

class TextValue : public zelk::PropertyValue {
public:
  explicit TextValue(std::string text) : m_text(std::move(text)) {}
  void GetValueAsSymbol(du::Symbol& out) const override { out = du::Symbol(std::string_view(m_text)); }
  void GetValueAsString(std::string& out) const override { out = m_text; }

private:
  std::string m_text;
};

/// An instance that is what its members say. It counts how often it is asked for its parent.
class FilterItem : public kerneltest::FakeInstance {
public:
  explicit FilterItem(std::string_view itemName) : name(itemName) {}
  FilterItem(const FilterItem&) = delete;
  FilterItem& operator=(const FilterItem&) = delete;
  ~FilterItem() override
  {
    // Chains may be deep.
    std::vector<du::SmartPtr<FilterItem>> dying = std::exchange(children, {});
    while (!dying.empty()) {
      const du::SmartPtr<FilterItem> last = std::move(dying.back());
      dying.pop_back();
      dying.insert(dying.end(), last->children.begin(), last->children.end());
      last->children.clear();
    }
  }

  du::Symbol name;
  bool isBody = false;
  bool isSibling = false;
  bool isFirstSibling = false;
  /// Equal siblings have the same one; 0 is alone.
  int siblingGroup = 0;
  std::map<std::pair<std::string, std::string>, du::SmartPtr<zelk::PropertyValue>> properties;
  FilterItem* parent = nullptr;
  std::vector<du::SmartPtr<FilterItem>> children;
  mutable int parentQuestions = 0;

  FilterItem* Add(std::string_view childName)
  {
    children.push_back(du::MakeSmart<FilterItem>(childName));
    children.back()->parent = this;
    return children.back().Get();
  }
  FilterItem* AddBody(std::string_view childName)
  {
    FilterItem* body = Add(childName);
    body->isBody = true;
    return body;
  }
  FilterItem* AddSibling(std::string_view childName, bool isFirst)
  {
    FilterItem* sibling = Add(childName);
    sibling->isSibling = true;
    sibling->siblingGroup = 1;
    sibling->isFirstSibling = isFirst;
    return sibling;
  }
  void SetProperty(const std::string& group, const std::string& property, const std::string& text)
  {
    properties[{group, property}] = du::MakeSmart<TextValue>(text);
  }

  du::Symbol GetObjectName() const override { return name; }
  bool IsBodyInstance() const override { return isBody; }
  bool IsMultiInstancedSibling() const override { return isSibling; }
  bool IsFirstMultiInstancedSibling() const override { return isFirstSibling; }
  void GetAllMultiInstancedSibling(std::vector<du::SmartPtr<zelk::Instance>>& out) const override
  {
    out.clear();
    if (!parent || siblingGroup == 0) {
      return;
    }
    for (const auto& child : parent->children) {
      if (child->siblingGroup == siblingGroup) {
        out.emplace_back(child.Get());
      }
    }
  }
  bool HasChildren() const override { return !children.empty(); }
  bool HasNoneBodyChildren() const override
  {
    for (const auto& child : children) {
      if (!child->isBody) {
        return true;
      }
    }
    return false;
  }
  void GetBaseParent(du::SmartPtr<zelk::BaseInstance>& out) const override
  {
    ++parentQuestions;
    out = du::SmartPtr<zelk::BaseInstance>(parent);
  }
  void GetBaseChildren(std::vector<du::SmartPtr<zelk::BaseInstance>>& out) const override
  {
    out.assign(children.begin(), children.end());
  }
  void GetPropertyValue(du::SmartPtr<zelk::PropertyValue>& out, const du::Symbol& group, const du::Symbol& property,
                        const du::Symbol& fallback) const override
  {
    const auto found = properties.find({std::string(group), std::string(property)});
    out.Reset();
    if (found != properties.end()) {
      out = found->second;
    } else if (!fallback.IsEmpty()) {
      out = du::MakeSmart<TextValue>(std::string(fallback));
    }
  }
};

}  // namespace filtertest
