#pragma once

#include <utility>

#include "dg/Color.h"
#include "memkernel/ObserverList.h"
#include "zelk/ClashReportView.h"
#include "zelk/ShapeView.h"
#include "zelk/ShapeViewObserver.h"
#include "zelk/View.h"

namespace memkernel {

/// What a view draws of the selection, and in which colours.
struct HighlightSettings {
  bool showSelection = true;
  bool showHighlight = true;
  bool showAssocHighlight = true;
  dg::Color selection{1.0F, 0.65F, 0.0F, 1.0F};
  dg::Color highlight{1.0F, 1.0F, 0.0F, 1.0F};
  dg::Color assocHighlight{0.2F, 0.7F, 1.0F, 1.0F};

  friend bool operator==(const HighlightSettings&, const HighlightSettings&) = default;
};

/// A view behind one of the view classes of the kernel contract. Owner's thread.
template <typename Contract>
class BasicView : public Contract {
public:
  /// `scene` may be null.
  explicit BasicView(const du::SmartPtr<zelk::Scene>& scene) : m_scene(scene) {}

  void GetScene(du::SmartPtr<zelk::Scene>& out) const override { out = m_scene; }
  void GetHighlightSettings(bool& showSelection, bool& showHighlight, bool& showAssocHighlight, dg::Color& selection,
                            dg::Color& highlight, dg::Color& assocHighlight) override
  {
    showSelection = m_settings.showSelection;
    showHighlight = m_settings.showHighlight;
    showAssocHighlight = m_settings.showAssocHighlight;
    selection = m_settings.selection;
    highlight = m_settings.highlight;
    assocHighlight = m_settings.assocHighlight;
  }

  [[nodiscard]] const HighlightSettings& GetSettings() const noexcept { return m_settings; }
  void SetSettings(const HighlightSettings& settings)
  {
    if (!(settings == m_settings)) {
      m_settings = settings;
      _OnSettingsChanged();
    }
  }

private:
  virtual void _OnSettingsChanged() {}

  const du::SmartPtr<zelk::Scene> m_scene;
  HighlightSettings m_settings;
};

using View = BasicView<zelk::View>;
using ClashReportView = BasicView<zelk::ClashReportView>;

/// A view of a shape scene. Observers that are still registered when it dies are told by `OnUnregister`.
class ShapeView final : public BasicView<zelk::ShapeView> {
public:
  explicit ShapeView(const du::SmartPtr<zelk::Scene>& scene);
  ~ShapeView() override;

  /// Replays `OnHighlightColorsChange` and `OnRenderStyleChanged`.
  bool RegisterObserver(zelk::ShapeViewObserver& observer, bool replay) override;
  bool UnregisterObserver(zelk::ShapeViewObserver& observer) override;

  void NotifyCameraChanged();
  void NotifyRenderStyleChanged();

private:
  template <typename Call>
  void _Tell(Call call);
  void _OnSettingsChanged() override;

  ObserverList<zelk::ShapeViewObserver> m_observers;
};

}  // namespace memkernel
