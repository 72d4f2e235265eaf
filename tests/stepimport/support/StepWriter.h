#pragma once

#include <string>
#include <vector>

namespace stepimporttest {

/// Writes the text of a STEP file, without any geometry but what is asked for, entity by entity, so that a test can say
/// in what order and in which bytes things stand in it. Names go into the text as they are: a quote has to be doubled
/// by the caller.
class StepWriter {
public:
  /// A product definition, by the number of its entity.
  using Definition = int;

  explicit StepWriter(std::string schema = "AUTOMOTIVE_DESIGN { 1 0 10303 214 1 1 1 1 }");

  /// `name` and `id` with their quotes, or `$`.
  Definition AddRawProduct(const std::string& id, const std::string& name);
  Definition AddProduct(const std::string& name) { return AddRawProduct('\'' + name + '\'', '\'' + name + '\''); }
  /// `name` with its quotes, or `$`.
  void AddRawOccurrence(Definition assembly, Definition product, const std::string& name);
  void AddOccurrence(Definition assembly, Definition product, const std::string& name)
  {
    AddRawOccurrence(assembly, product, '\'' + name + '\'');
  }
  /// `product` stands for another file.
  void AddReference(Definition product, const std::string& file);

  /// Gives the product one edge as its geometry.
  void AddEdge(Definition product);
  /// Gives the product a solid that has no surface.
  void AddDamagedSolid(Definition product);

  /// A surface of triangles in the plane of x and y, by the number of its entity. They have the corners (0,0) and
  /// (1,0); the third one of each is given as "x,y". Nothing can be made of a triangle whose corners stand in one line.
  int MakeTriangles(const std::vector<std::string>& corners);
  /// Gives the product this surface as its geometry, which other products may have as well.
  void AddSurface(Definition product, int surface);

  [[nodiscard]] std::string GetText() const;

private:
  /// `type` is that of the representation that holds `item`.
  void _AddGeometry(Definition product, const std::string& type, int item);
  int _Add(const std::string& entity);
  static std::string _Ref(int number) { return '#' + std::to_string(number); }

  std::string m_header;
  std::string m_data;
  int m_last = 99;
};

}  // namespace stepimporttest
