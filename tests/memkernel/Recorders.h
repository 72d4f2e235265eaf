#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "memkernel/Tree.h"
#include "zelk/SelectionObserver.h"
#include "zelk/ShapeSceneObserver.h"
#include "zelk/TreeObserver.h"

namespace memkerneltest {

using Lines = std::vector<std::string>;

inline std::string NameOf(const du::SmartPtr<zelk::BaseInstance>& instance)
{
  return instance ? std::string(instance->GetObjectName()) : "nothing";
}

/// Writes every callback of a tree as one line.
class TreeRecorder : public zelk::TreeObserver {
public:
  /// Called after each line, from inside the callback.
  std::function<void(const std::string&)> onLine;

  [[nodiscard]] Lines Take() { return std::exchange(m_lines, {}); }

  void OnBeginUpdate() override { _Write("begin"); }
  void OnEndUpdate() override { _Write("end"); }
  void OnUnregister() override { _Write("unregister"); }
  void OnDestroy() override { _Write("destroy"); }
  void OnInstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance,
                        const du::SmartPtr<zelk::BaseInstance>& parent, const du::Symbol& name) override
  {
    _Write("create " + NameOf(instance) + " in " + NameOf(parent) + " as " + std::string(name));
  }
  void OnInstanceRemove(const du::SmartPtr<zelk::BaseInstance>& instance,
                        const du::SmartPtr<zelk::BaseInstance>& parent) override
  {
    _Write("remove " + NameOf(instance) + " from " + NameOf(parent));
  }
  void OnInstanceName(const du::SmartPtr<zelk::BaseInstance>& instance) override { _Write("name " + NameOf(instance)); }
  void OnInstancePropertiesChanged(const du::SmartPtr<zelk::BaseInstance>& instance) override
  {
    _Write("properties " + NameOf(instance));
  }
  void OnInstanceExpanded(const du::SmartPtr<zelk::Instance>& instance) override
  {
    _Write("expanded " + NameOf(instance));
  }
  void OnInstanceCollapsed(const du::SmartPtr<zelk::Instance>& instance) override
  {
    _Write("collapsed " + NameOf(instance));
  }
  void OnInstanceProxyToNode(const du::SmartPtr<zelk::Instance>& instance) override
  {
    _Write("node " + NameOf(instance));
  }
  void OnInstanceAddViewable(const du::SmartPtr<zelk::Instance>& instance,
                             const du::SmartPtr<zelk::ViewableData>& viewable) override
  {
    _Write((viewable->viewable ? "viewable " : "empty viewable ") + NameOf(instance));
  }
  void OnInstanceRemoveViewable(const du::SmartPtr<zelk::Instance>& instance,
                                const du::SmartPtr<zelk::ViewableData>& viewable) override
  {
    _Write((viewable->viewable ? "no viewable " : "no empty viewable ") + NameOf(instance));
  }
  void OnTreeColumnsChanged() override { _Write("columns"); }
  void OnDisplayNamesChanged() override { _Write("names"); }
  void OnPropertyGroupsLoaded() override { _Write("groups"); }

private:
  void _Write(const std::string& line)
  {
    m_lines.push_back(line);
    if (onLine) {
      onLine(line);
    }
  }

  Lines m_lines;
};

/// The same for a scene.
class SceneRecorder : public zelk::ShapeSceneObserver {
public:
  std::function<void(const std::string&)> onLine;

  [[nodiscard]] Lines Take() { return std::exchange(m_lines, {}); }

  void OnBeginUpdate() override { _Write("begin"); }
  void OnEndUpdate() override { _Write("end"); }
  void OnUnregister() override { _Write("unregister"); }
  void OnShapeInstanceCreate(const du::SmartPtr<zelk::ShapeInstance>& instance) override
  {
    _Write("create " + _NameOf(instance));
  }
  void OnShapeInstanceRemove(const du::SmartPtr<zelk::ShapeInstance>& instance) override
  {
    _Write("remove " + _NameOf(instance));
  }
  void OnShapeInstanceVisibility(const du::SmartPtr<zelk::ShapeInstance>& instance, bool visible) override
  {
    _Write((visible ? "show " : "hide ") + _NameOf(instance));
  }
  void OnInstanceCompared(const du::SmartPtr<zelk::ShapeInstance>& instance) override
  {
    _Write("compared " + _NameOf(instance));
  }
  void OnUnsyncInstances(bool unsynced) override { _Write(unsynced ? "unsync" : "sync"); }
  void OnApplyTreeUpdate() override { _Write("apply"); }

private:
  static std::string _NameOf(const du::SmartPtr<zelk::ShapeInstance>& shapeInstance)
  {
    du::SmartPtr<zelk::Instance> instance;
    shapeInstance->GetInstance(instance);
    return NameOf(instance);
  }
  void _Write(const std::string& line)
  {
    m_lines.push_back(line);
    if (onLine) {
      onLine(line);
    }
  }

  Lines m_lines;
};

/// The same for a selection list.
class SelectionRecorder : public zelk::SelectionObserver {
public:
  std::function<void(const std::string&)> onLine;

  [[nodiscard]] Lines Take() { return std::exchange(m_lines, {}); }

  void OnBeginUpdate() override { _Write("begin"); }
  void OnEndUpdate() override { _Write("end"); }
  void OnSelectionChanged(unsigned int list, bool clearFirst,
                          const std::vector<du::SmartPtr<zelk::SelectionItem>>& removed,
                          const std::vector<du::SmartPtr<zelk::SelectionItem>>& added) override
  {
    _Write("list " + std::to_string(list) + (clearFirst ? " cleared" : "") + " -" + std::to_string(removed.size())
           + " +" + std::to_string(added.size()));
  }
  void OnInsertItems(std::vector<du::SmartPtr<zelk::Object>>& items) override { _Write("insert" + _NamesOf(items)); }
  void OnRemoveItems(std::vector<du::SmartPtr<zelk::Object>>& items) override { _Write("remove" + _NamesOf(items)); }
  void OnClearSelection() override { _Write("clear"); }

private:
  static std::string _NamesOf(const std::vector<du::SmartPtr<zelk::Object>>& items)
  {
    std::vector<std::string> names;
    for (const auto& item : items) {
      names.emplace_back(item->GetObjectName());
    }
    // The order of a list is that of addresses.
    std::sort(names.begin(), names.end());
    std::string text;
    for (const std::string& name : names) {
      text += " " + name;
    }
    return text;
  }
  void _Write(const std::string& line)
  {
    m_lines.push_back(line);
    if (onLine) {
      onLine(line);
    }
  }

  Lines m_lines;
};

/// Tells when it dies, in the thread in which it does.
class TracedObject : public dom::Observer {
public:
  explicit TracedObject(std::function<void()> onDeath) : m_onDeath(std::move(onDeath)) {}
  ~TracedObject() override { m_onDeath(); }

private:
  std::function<void()> m_onDeath;
};

}  // namespace memkerneltest
