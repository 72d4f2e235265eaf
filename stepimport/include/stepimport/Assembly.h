#pragma once

#include <array>
#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace stepimport {

/// The place of a product in `Assembly::products`.
using ProductIndex = std::size_t;

/// What a file says about the look of a product or a solid. An empty colour or list: the file says nothing.
struct Appearance {
  /// "#RRGGBB" in sRGB.
  std::string color;
  /// In the order in which the file assigns them.
  std::vector<std::string> layers;
};

/// One solid of a product that has several.
struct Body {
  /// Never blank: a solid without a name is called by its number, "Body 2".
  std::string name;
  Appearance appearance;
};

/// Where an occurrence stands: three rows of four numbers, which take a point of the product, in millimetres, to its
/// place in the product that holds it. The first three columns turn, and may scale, the fourth moves.
using Placement = std::array<double, 12>;

inline constexpr Placement NoPlacement{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0};

/// One use of a product in another one.
struct Occurrence {
  /// Never blank: an occurrence without a name is called like its product.
  std::string name;
  ProductIndex product = 0;
  /// `NoPlacement` where the file gives none.
  Placement placement = NoPlacement;
};

/// Whether a product stands for another file.
enum class ReferenceState {
  None,
  /// The file was read; the product holds what it holds.
  Expanded,
  /// The file was not found or could not be read; the product is empty.
  Failed
};

/// A reference to another file. Meaningful only when `state` is not `None`.
struct FileReference {
  ReferenceState state = ReferenceState::None;
  /// As the referring file writes it.
  std::string target;
  /// The file that was found; empty when there is none.
  std::filesystem::path file;
  /// Why the reference failed; empty otherwise.
  std::string cause;
};

/// One product of a file: a part or an assembly, held once however often it occurs.
struct Product {
  /// Never blank.
  std::string name;
  /// The file that declares it.
  std::filesystem::path sourceFile;
  Appearance appearance;
  /// In the order of the file.
  std::vector<Occurrence> occurrences;
  /// Empty for a part of a single solid.
  std::vector<Body> bodies;
  /// It has geometry of its own, apart from that of its occurrences.
  bool hasShape = false;
  /// The file gives it geometry of which nothing could be made; `hasShape` is false then.
  bool hasDamagedShape = false;
  FileReference reference;
};

/// The whole content of a file and of the files that it refers to, without any geometry. All names are valid UTF-8 on
/// one line. Products do not contain themselves, on any road.
struct Assembly {
  std::vector<Product> products;
  ProductIndex root = 0;
};

/// How many instances `assembly` unfolds to, bodies and the root included. Stops counting at the largest value of
/// `std::size_t`, which a small file can reach. Costs one pass over the products.
[[nodiscard]] std::size_t CountInstances(const Assembly& assembly);

}  // namespace stepimport
