#pragma once

#include "zelk/View.h"

namespace zelk {

/// A view that reports clashes between parts. Told by class test only.
class ClashReportView : public View {
public:
  static constexpr ClassType CLASS_TYPE{ClassIdClashReportView, "zelk::ClashReportView", &View::CLASS_TYPE};
  [[nodiscard]] const ClassType& GetClassTypes() const override { return CLASS_TYPE; }
};

}  // namespace zelk
