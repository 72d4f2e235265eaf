#include <cstddef>
#include <cstdlib>

#include "du/HashMap.h"
#include "du/Symbol.h"
#include "guitree/GuiInterface.h"

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
  guitree::GuiInterface& panel = host;
  ChangeMap changes;
  changes[nullptr] = 1;

  panel.StartTreeUpdate();
  panel.UpdateVisAndTypeIconChanges(nullptr, &changes, nullptr, nullptr);
  panel.FinishTreeUpdate();

  return host.GetChanges() == 1 && du::Symbol("wheel") == "wheel" ? EXIT_SUCCESS : EXIT_FAILURE;
}
