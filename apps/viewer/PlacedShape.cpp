#include "PlacedShape.h"

#include <utility>

namespace viewer {

namespace {

using BasePtr = du::SmartPtr<zelk::BaseInstance>;
using SourcePtr = std::shared_ptr<const ShapeSource>;

// Neither a mirror nor numbers that are no placement may stop the rest from being shown.
gp_Trsf ToTransformation(const stepimport::Placement& placement)
{
  gp_Trsf result;
  try {
    result.SetValues(placement[0], placement[1], placement[2], placement[3], placement[4], placement[5], placement[6],
                     placement[7], placement[8], placement[9], placement[10], placement[11]);
  } catch (const Standard_Failure&) {
    return {};
  }
  return result;
}

}  // namespace

class PlacedShapeFinder::Walk {
public:
  Walk(const stepimport::Assembly& assembly, const std::shared_ptr<const stepimport::ShapeStore>& store,
       const BasePtr& top)
      : m_assembly(assembly), m_store(store), m_top(top), m_sources(assembly.products.size())
  {
  }

  void GoOneStep()
  {
    if (const BasePtr top = std::exchange(m_top, {})) {
      _Open(top, m_assembly.root, gp_Trsf());
    } else {
      _TakeNext();
    }
  }
  [[nodiscard]] bool IsDone() const noexcept { return !m_top && m_path.empty(); }
  [[nodiscard]] std::size_t GetVisitedCount() const noexcept { return m_visited; }
  [[nodiscard]] std::vector<PlacedShape> Take() { return std::exchange(m_found, {}); }

private:
  /// The sources of one product; made when the first of its instances is met.
  struct Sources {
    SourcePtr product;
    std::vector<SourcePtr> bodies;
  };

  /// An instance whose occurrences are being visited.
  struct Step {
    BasePtr child;
    stepimport::ProductIndex product;
    std::size_t next;
    gp_Trsf place;
  };

  const Sources& _GetSources(stepimport::ProductIndex index)
  {
    Sources& sources = m_sources[index];
    if (!sources.product) {
      const stepimport::Product& product = m_assembly.products[index];
      const bool hasBodies = !product.bodies.empty();
      sources.product =
          std::make_shared<ShapeSource>(ShapeSource{m_store, index, std::nullopt, hasBodies, product.appearance.color});
      for (const stepimport::Body& body : product.bodies) {
        const std::string& own = body.appearance.color;
        sources.bodies.push_back(std::make_shared<ShapeSource>(
            ShapeSource{m_store, index, sources.bodies.size(), true, own.empty() ? product.appearance.color : own}));
      }
    }
    return sources;
  }

  void _Visit(const BasePtr& instance, const SourcePtr& source, const gp_Trsf& place)
  {
    ++m_visited;
    auto own = du::DynamicCast<memkernel::Instance>(instance);
    if (own && own->HasShapeSource()) {
      m_found.push_back({std::move(own), source, place});
    }
  }

  void _Open(const BasePtr& instance, stepimport::ProductIndex index, const gp_Trsf& place)
  {
    const Sources& sources = _GetSources(index);
    _Visit(instance, sources.product, place);
    BasePtr child;
    instance->GetBaseFirstChild(child);
    for (const SourcePtr& body : sources.bodies) {
      if (!child) {
        return;
      }
      _Visit(child, body, place);
      child->GetBaseNextSibling(child);
    }
    if (child) {
      m_path.push_back({child, index, 0, place});
    }
  }

  void _TakeNext()
  {
    Step& step = m_path.back();
    const auto& occurrences = m_assembly.products[step.product].occurrences;
    if (!step.child || step.next == occurrences.size()) {
      m_path.pop_back();
      return;
    }
    const stepimport::Occurrence& occurrence = occurrences[step.next++];
    const BasePtr child = step.child;
    child->GetBaseNextSibling(step.child);
    _Open(child, occurrence.product, step.place * ToTransformation(occurrence.placement));
  }

  const stepimport::Assembly& m_assembly;
  const std::shared_ptr<const stepimport::ShapeStore>& m_store;
  /// Null once it was visited.
  BasePtr m_top;
  std::vector<Sources> m_sources;
  std::vector<Step> m_path;
  std::vector<PlacedShape> m_found;
  std::size_t m_visited = 0;
};

PlacedShapeFinder::PlacedShapeFinder(const stepimport::Assembly& assembly,
                                     const std::shared_ptr<const stepimport::ShapeStore>& store,
                                     const du::SmartPtr<memkernel::Instance>& top)
    : m_walk(std::make_unique<Walk>(assembly, store, assembly.products.empty() ? nullptr : top))
{
}

PlacedShapeFinder::~PlacedShapeFinder() = default;

std::vector<PlacedShape> PlacedShapeFinder::FindSome(std::size_t count)
{
  const std::size_t last = m_walk->GetVisitedCount() + count;
  while (!m_walk->IsDone() && m_walk->GetVisitedCount() < last) {
    m_walk->GoOneStep();
  }
  return m_walk->Take();
}

bool PlacedShapeFinder::IsDone() const noexcept
{
  return m_walk->IsDone();
}

std::size_t PlacedShapeFinder::GetVisitedCount() const noexcept
{
  return m_walk->GetVisitedCount();
}

}  // namespace viewer
