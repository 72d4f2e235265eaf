#include <cstddef>
#include <cstdlib>

#include "du/HashMap.h"
#include "du/Symbol.h"
#include "guitree/GuiInterface.h"
#include "guitree/GuiTree.h"
#include "guitree/SceneInfoLog.h"

namespace {

using VisibleMap = du::HashMap<const zelk::BaseInstance*, guitree::VisibleState>;
using ChangeMap = du::HashMap<const zelk::BaseInstance*, int>;

class Host : public guitree::GuiInterface {
public:
  void SetSceneManagerObserver(const du::SmartPtr<SceneManagerObserver>& /*observer*/) override {}

  void UpdateVisAndTypeIconChanges(const VisibleMap* /*visibleMap*/, const ChangeMap* visibleChangeMap,
                                   guitree::TypeIconMap* /*typeIconMap*/,
                                   const ChangeMap* /*typeIconChangeMap*/) override
  {
    m_changes += visibleChangeMap->size();
  }

  [[nodiscard]] std::size_t GetChanges() const { return m_changes; }

private:
  std::size_t m_changes = 0;
};

}  // namespace

int main()
{
  Host host;
  const auto panel = du::MakeSmart<guitree::GuiTree>(nullptr);
  panel->SetGuiInterface(&host);
  panel->Initialise(nullptr);
  ChangeMap changes;
  changes[nullptr] = 1;

  panel->GetGuiInterface()->UpdateVisAndTypeIconChanges(nullptr, &changes, nullptr, nullptr);
  panel->Close();

  const bool isFed = host.GetChanges() == 1 && panel->GetCurrentLog() == nullptr;
  return isFed && du::Symbol("wheel") == "wheel" ? EXIT_SUCCESS : EXIT_FAILURE;
}
