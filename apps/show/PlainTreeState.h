#pragma once

#include "guitree/WorldTreeState.h"
#include "structure_utils/TreeFilterAdditionalInfo.h"
#include "zelremote/StructureFilterInfo.h"

/// A panel that shows the world's tree with the selection and the scene of the current view: all of it in the kernel's
/// order, or what one filter leaves. Lives as every tree state does; owner's thread.
class PlainTreeState : public guitree::WorldTreeState {
public:
  explicit PlainTreeState(guitree::GuiTree& tree);
  ~PlainTreeState() override;

  /// Lets everything through at the start. What is changed here shows with the next population.
  [[nodiscard]] zelremote::StructureFilterInfo& GetStructureFilter() noexcept { return m_filter; }

  /// Tells apart proxies, bodies, shapes that have failed in `scene`, and what has nothing to load; all else is plain.
  [[nodiscard]] int GetUnloadedTypeIcon(const zelk::BaseInstance* instance,
                                        const du::SmartPtr<zelk::Scene>& scene) override;
  /// The same for every view.
  [[nodiscard]] structure_utils::TreeFilterInfoBase& GetFilter(const du::SmartPtr<zelk::View>& view) override;
  /// The scene that is shown, and who knows what has failed in it.
  [[nodiscard]] du::SmartPtr<du::RefCounted> GetAdditionalFilterInfo() const override;

private:
  using AdditionalInfo = structure_utils::TreeFilterAdditionalInfo;

  /// Answers on workers, so it reads from the kernel alone.
  class StatusLookup final : public AdditionalInfo::TreeFilterStatusLookup {
  public:
    virtual ~StatusLookup() = default;

    TFStatus TreeFilterGetItemStatus(const du::ConstSmartPtr<zelk::Instance>& instance,
                                     const du::SmartPtr<zelk::Scene>& scene) override;
  };

  zelremote::StructureFilterInfo m_filter;
  mutable StatusLookup m_statusLookup;
  /// For the scene that was shown last; null before the first filter.
  mutable du::SmartPtr<AdditionalInfo> m_additionalInfo;
};
