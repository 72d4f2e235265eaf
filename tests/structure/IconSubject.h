#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "FakeInstance.h"
#include "guitree/StructureTreeState.h"
#include "testsupport/PlainScenes.h"
#include "testsupport/PlainShapeInstance.h"
#include "zelk/GeometryCompareScene.h"

namespace structuretest {

/// What is asked, in order, by everything that an icon is chosen for; nothing is kept without a list.
struct Questions {
  std::vector<std::string>* list = nullptr;

  void Note(const char* question) const
  {
    if (list) {
      list->emplace_back(question);
    }
  }
};

/// An instance that is what its members say.
class IconInstance : public kerneltest::FakeInstance {
public:
  bool isRootContainerRoot = false;
  bool hasProxyExpandFailed = false;
  bool isProxyExpanded = false;
  bool isProxy = false;
  bool hasShapeSource = false;
  bool hasThumbnailSource = false;
  bool isSibling = false;
  bool isBody = false;
  bool isConstruction = false;
  bool isPlain = false;
  Questions questions;

  bool IsRootContainerRoot() const override { return _Answer("IsRootContainerRoot", isRootContainerRoot); }
  bool HasProxyExpandFailed() const override { return _Answer("HasProxyExpandFailed", hasProxyExpandFailed); }
  bool IsProxyExpanded() const override { return _Answer("IsProxyExpanded", isProxyExpanded); }
  bool IsProxy() const override { return _Answer("IsProxy", isProxy); }
  bool HasShapeSource() const override { return _Answer("HasShapeSource", hasShapeSource); }
  bool HasThumbnailSource() const override { return _Answer("HasThumbnailSource", hasThumbnailSource); }
  bool IsMultiInstancedSibling() const override { return _Answer("IsMultiInstancedSibling", isSibling); }
  bool IsBodyTypeInstance() const override { return _Answer("IsBodyTypeInstance", isBody); }
  bool IsConstructionBodyTypeInstance() const override
  {
    return _Answer("IsConstructionBodyTypeInstance", isConstruction);
  }
  bool IsPlainIconInstance() const override { return _Answer("IsPlainIconInstance", isPlain); }

private:
  [[nodiscard]] bool _Answer(const char* question, bool answer) const
  {
    questions.Note(question);
    return answer;
  }
};

class IconShape : public testsupport::PlainShape {
public:
  Questions questions;

  [[nodiscard]] bool IsFromTrask() const override
  {
    questions.Note("IsFromTrask");
    return isFromTrask;
  }
  [[nodiscard]] bool IsFailedFromTrask() const override
  {
    questions.Note("IsFailedFromTrask");
    return isFailedFromTrask;
  }
};

/// A shape instance that notes what it is asked.
class IconShapeInstance : public testsupport::PlainShapeInstance {
public:
  IconShapeInstance() : PlainShapeInstance(nullptr) { shape = iconShape; }

  du::SmartPtr<IconShape> iconShape = du::MakeSmart<IconShape>();
  bool isRejected = false;
  Questions questions;

  void GetShape(du::SmartPtr<zelk::Shape>& out) const override
  {
    questions.Note("GetShape");
    PlainShapeInstance::GetShape(out);
  }
  [[nodiscard]] unsigned short GetShapeDataStatus(unsigned short what) const override
  {
    questions.Note("GetShapeDataStatus");
    return PlainShapeInstance::GetShapeDataStatus(what);
  }
  [[nodiscard]] bool HasRejectedCopyrights() const override
  {
    questions.Note("HasRejectedCopyrights");
    return isRejected;
  }
  [[nodiscard]] bool IsCompared() const override
  {
    questions.Note("IsCompared");
    return isCompared;
  }
  [[nodiscard]] bool IsComparedFirstItem() const override
  {
    questions.Note("IsComparedFirstItem");
    return isComparedFirstItem;
  }
};

/// A scene with one shape instance, or none, for whatever instance.
template <typename Base>
class IconScene : public Base {
public:
  du::SmartPtr<zelk::ShapeInstance> shapeInstance;
  /// False besides a shape instance: one that is told with a false answer.
  bool answer = true;
  Questions questions;

  void GetSelectionManager(du::SmartPtr<zelk::SelectionManager>& out) const override { out.Reset(); }
  bool RegisterObserver(zelk::ShapeSceneObserver& /*observer*/, du::Flags /*what*/, bool /*withReplay*/) override
  {
    return false;
  }
  bool UnregisterObserver(zelk::ShapeSceneObserver& /*observer*/) override { return false; }
  bool GetShapeInstance(const du::ConstSmartPtr<zelk::Instance>& /*instance*/,
                        du::SmartPtr<zelk::ShapeInstance>& out) const override
  {
    questions.Note("GetShapeInstance");
    out = shapeInstance;
    return answer && shapeInstance;
  }
};

/// Says that it is a comparison, and is no shape scene.
class ComparisonWithoutShapes : public testsupport::PlainScene {
public:
  [[nodiscard]] const zelk::ClassType& GetClassTypes() const override { return zelk::GeometryCompareScene::CLASS_TYPE; }
};

enum class SceneKind { None, NoShapes, ComparisonWithoutShapes, Shapes, Comparison };

/// An instance with everything that its icon depends on. The display switches are the test's.
struct IconSubject {
  du::SmartPtr<IconInstance> instance = du::MakeSmart<IconInstance>();
  du::SmartPtr<IconShapeInstance> shapeInstance = du::MakeSmart<IconShapeInstance>();
  du::SmartPtr<zelk::Scene> scene;

  void ShowIn(SceneKind kind, bool hasShapeInstance = true)
  {
    scene = m_scenes.at(static_cast<std::size_t>(kind));
    m_shapes->shapeInstance = m_comparison->shapeInstance = hasShapeInstance ? shapeInstance : nullptr;
  }
  [[nodiscard]] int GetIcon() const
  {
    return guitree::StructureTreeState::GetUnloadedTypeIconStatic(m_instance, scene);
  }
  /// The questions of one decision.
  [[nodiscard]] std::vector<std::string> GetQuestions()
  {
    std::vector<std::string> list;
    _SetList(&list);
    static_cast<void>(GetIcon());
    _SetList(nullptr);
    return list;
  }

private:
  void _SetList(std::vector<std::string>* list) const
  {
    instance->questions.list = list;
    shapeInstance->questions.list = list;
    shapeInstance->iconShape->questions.list = list;
    m_shapes->questions.list = list;
    m_comparison->questions.list = list;
  }

  du::ConstSmartPtr<zelk::Instance> m_instance{instance.Get()};
  du::SmartPtr<IconScene<zelk::ShapeScene>> m_shapes = du::MakeSmart<IconScene<zelk::ShapeScene>>();
  du::SmartPtr<IconScene<zelk::GeometryCompareScene>> m_comparison =
      du::MakeSmart<IconScene<zelk::GeometryCompareScene>>();
  std::array<du::SmartPtr<zelk::Scene>, 5> m_scenes{nullptr, du::MakeSmart<testsupport::PlainScene>(),
                                                    du::MakeSmart<ComparisonWithoutShapes>(), m_shapes, m_comparison};
};

}  // namespace structuretest
