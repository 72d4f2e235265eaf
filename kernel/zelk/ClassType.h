#pragma once

namespace zelk {

/// The run-time class of a kernel object: a number, a name and the class it derives from. Constants, one a class,
/// compared by address.
struct ClassType {
  unsigned int id = 0;
  const char* name = "";
  /// Null at the root of the hierarchy.
  const ClassType* base = nullptr;
};

/// The numbers that `Object::IsATypeOfId` takes. A kernel numbers classes of its own from `ClassIdFirstOfKernel` on.
enum ClassId : unsigned int {
  ClassIdObject = 1,
  ClassIdSelectionItem = 2,
  ClassIdObjectSelectionItem = 3,
  ClassIdBaseInstance = 10,
  ClassIdInstance = 11,
  ClassIdComponentInstance = 12,
  ClassIdSbomInstance = 13,
  ClassIdBaseTree = 20,
  ClassIdTree = 21,
  ClassIdShape = 30,
  ClassIdShapeInstance = 31,
  ClassIdAnchor = 32,
  ClassIdView = 40,
  ClassIdShapeView = 41,
  ClassIdClashReportView = 42,
  ClassIdScene = 50,
  ClassIdShapeScene = 51,
  ClassIdGeometryCompareScene = 52,
  /// A scene of drawings: it shows sheets and no assembly structure.
  ClassIdSchematicScene = 53,
  ClassIdFirstOfKernel = 1000,
};

}  // namespace zelk
