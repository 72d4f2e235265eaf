// Every combination of what an icon depends on, against the choice written as a table.

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "IconSubject.h"
#include "testsupport/DisplaySwitches.h"

namespace {

using structuretest::IconSubject;
using structuretest::SceneKind;

struct Row {
  /// One letter for each fact: 1, 0, or a dot where it does not matter. Blanks separate.
  std::string_view facts;
  int result;
};

/// What the shape data says, by: shape instance there (1), shape (- none, f foreign, n native, d native and defective),
/// status.
constexpr std::array s_failure{
    Row{"0 . .", 0}, Row{"1 - 1", 1}, Row{"1 f 1", 1}, Row{"1 n .", 0}, Row{"1 d 1", 1}, Row{"1 . .", 0},
};

/// What the scene compares, by: whether it is a comparison of shapes, whether the shape instance is there, compared,
/// first. The result is a letter for the next table.
constexpr std::array s_comparison{
    Row{"0 . . .", '-'}, Row{"1 0 . .", '-'}, Row{"1 1 0 .", '-'}, Row{"1 1 1 1", 'F'}, Row{"1 1 1 0", 'O'},
};

constexpr std::array s_icons{
    // comparison, root container root | expand failed, expanded, proxy | shape, thumbnail source |
    // collapsed sibling, body, construction body, plain | rejected, failed
    Row{"F . | . . . | . . | . . . . | . .", 24},
    Row{"O . | . . . | . . | . . . . | . .", 26},
    Row{"- 0 | 1 . . | . . | . . . . | . .", 16},
    Row{"- 0 | 0 1 . | 0 . | . . . . | . .", 8},
    Row{"- 0 | 0 1 . | 1 . | . . . . | 1 .", 12},
    Row{"- 0 | 0 1 . | 1 . | . . . . | 0 1", 14},
    Row{"- 0 | 0 1 . | 1 . | . . . . | 0 0", 10},
    Row{"- 0 | 0 0 1 | . . | . . . . | . .", 6},
    // Nothing to load but perhaps a thumbnail.
    Row{"- . | . . . | 0 1 | 1 . . . | . .", 38},
    Row{"- . | . . . | 0 1 | 0 1 . . | . .", 48},
    Row{"- . | . . . | 0 1 | 0 0 1 . | . .", 48},
    Row{"- . | . . . | 0 1 | 0 0 0 . | . .", 20},
    Row{"- . | . . . | 0 0 | 1 . . . | . .", 34},
    Row{"- . | . . . | 0 0 | 0 . . 1 | . .", 0},
    Row{"- . | . . . | 0 0 | 0 1 . 0 | . .", 48},
    Row{"- . | . . . | 0 0 | 0 0 1 0 | . .", 48},
    Row{"- . | . . . | 0 0 | 0 0 0 0 | . .", 2},
    // With a shape.
    Row{"- . | . . . | 1 1 | 1 . . . | . .", 36},
    Row{"- . | . . . | 1 1 | 0 1 . . | . .", 44},
    Row{"- . | . . . | 1 1 | 0 0 1 . | . .", 46},
    Row{"- . | . . . | 1 1 | 0 0 0 . | . .", 18},
    Row{"- . | . . . | 1 0 | 1 . . . | 1 .", 42},
    Row{"- . | . . . | 1 0 | 0 . . . | 1 .", 30},
    Row{"- . | . . . | 1 0 | . 1 . . | 0 1", 50},
    Row{"- . | . . . | 1 0 | . 0 1 . | 0 1", 52},
    Row{"- . | . . . | 1 0 | 1 0 0 . | 0 1", 40},
    Row{"- . | . . . | 1 0 | 0 0 0 . | 0 1", 28},
    Row{"- . | . . . | 1 0 | 1 . . . | 0 0", 32},
    Row{"- . | . . . | 1 0 | 0 1 . . | 0 0", 44},
    Row{"- . | . . . | 1 0 | 0 0 1 . | 0 0", 46},
    Row{"- . | . . . | 1 0 | 0 0 0 . | 0 0", 0},
};

bool IsMet(const Row& row, const std::string& facts)
{
  std::size_t fact = 0;
  for (const char letter : row.facts) {
    if (letter == ' ' || letter == '|') {
      continue;
    }
    if (letter != '.' && letter != facts.at(fact)) {
      return false;
    }
    ++fact;
  }
  return fact == facts.size();
}

/// The row that decides: the first one that is met. The number of rows for none.
template <std::size_t count>
std::size_t FindRow(const std::array<Row, count>& table, const std::string& facts)
{
  std::size_t row = 0;
  while (row < count && !IsMet(table.at(row), facts)) {
    ++row;
  }
  return row;
}

template <std::size_t count>
int Choose(const std::array<Row, count>& table, const std::string& facts)
{
  return table.at(FindRow(table, facts)).result;
}

char Letter(bool fact)
{
  return fact ? '1' : '0';
}

/// A scene with, or without, a shape instance in one of its conditions.
struct Setting {
  SceneKind kind = SceneKind::None;
  bool hasShapeInstance = false;
  bool isCompared = false;
  bool isFirst = false;
  char shape = '-';
  unsigned short status = 0;
  bool isRejected = false;
};

std::vector<Setting> ListSettings()
{
  std::vector<Setting> settings;
  for (const SceneKind kind : {SceneKind::None, SceneKind::NoShapes, SceneKind::ComparisonWithoutShapes,
                               SceneKind::Shapes, SceneKind::Comparison}) {
    settings.push_back({.kind = kind});
  }
  for (const SceneKind kind : {SceneKind::Shapes, SceneKind::Comparison}) {
    for (unsigned int bits = 0; bits < 8; ++bits) {
      for (const char shape : {'-', 'f', 'n', 'd'}) {
        for (const zelk::ShapeDataStatus status :
             {zelk::ShapeDataNone, zelk::ShapeDataFailed, zelk::ShapeDataPartial, zelk::ShapeDataLoaded}) {
          settings.push_back({kind, true, (bits & 1U) != 0, (bits & 2U) != 0, shape, status, (bits & 4U) != 0});
        }
      }
    }
  }
  return settings;
}

void Apply(const Setting& setting, IconSubject& subject)
{
  auto& shapeInstance = *subject.shapeInstance;
  shapeInstance.isCompared = setting.isCompared;
  shapeInstance.isComparedFirstItem = setting.isFirst;
  shapeInstance.shape = setting.shape == '-' ? nullptr : shapeInstance.iconShape;
  shapeInstance.iconShape->isFromTrask = setting.shape == 'n' || setting.shape == 'd';
  shapeInstance.iconShape->isFailedFromTrask = setting.shape == 'd';
  shapeInstance.status = setting.status;
  shapeInstance.isRejected = setting.isRejected;
  subject.ShowIn(setting.kind, setting.hasShapeInstance);
}

char Compare(const Setting& setting)
{
  return static_cast<char>(
      Choose(s_comparison, {Letter(setting.kind == SceneKind::Comparison), Letter(setting.hasShapeInstance),
                            Letter(setting.isCompared), Letter(setting.isFirst)}));
}

bool HasFailed(const Setting& setting)
{
  const auto status = static_cast<char>('0' + setting.status);
  return Choose(s_failure, {Letter(setting.hasShapeInstance), setting.shape, status}) != 0;
}

/// The facts that an instance has by itself, one bit each.
constexpr unsigned int s_kinds = 1U << 10U;

std::string ApplyKind(unsigned int kind, bool isCollapsing, structuretest::IconInstance& instance)
{
  const std::array members{&instance.isRootContainerRoot, &instance.hasProxyExpandFailed,
                           &instance.isProxyExpanded,     &instance.isProxy,
                           &instance.hasShapeSource,      &instance.hasThumbnailSource,
                           &instance.isSibling,           &instance.isBody,
                           &instance.isConstruction,      &instance.isPlain};
  std::string facts;
  for (std::size_t i = 0; i < members.size(); ++i) {
    *members.at(i) = ((kind >> i) & 1U) != 0;
    const bool isFact = members.at(i) == &instance.isSibling ? instance.isSibling && isCollapsing : *members.at(i);
    facts += Letter(isFact);
  }
  return facts;
}

class TypeIconTable : public testing::TestWithParam<bool> {};

TEST_P(TypeIconTable, EveryCombination_HasTheIconOfTheFirstRowThatItMeetsAndNoRowIsIdle)
{
  const bool isCollapsing = GetParam();
  const testsupport::DisplaySwitches switches(isCollapsing);
  const std::vector<Setting> settings = ListSettings();
  IconSubject subject;
  std::array<std::size_t, s_icons.size()> met{};
  std::vector<std::string> wrong;

  for (const Setting& setting : settings) {
    Apply(setting, subject);
    const bool hasFlags = setting.hasShapeInstance;
    for (unsigned int kind = 0; kind < s_kinds; ++kind) {
      const std::string facts = Compare(setting) + ApplyKind(kind, isCollapsing, *subject.instance)
                                + Letter(hasFlags && setting.isRejected) + Letter(HasFailed(setting));
      const std::size_t row = FindRow(s_icons, facts);
      ASSERT_LT(row, s_icons.size()) << facts;
      ++met.at(row);
      if (subject.GetIcon() != s_icons.at(row).result && wrong.size() < 10) {
        wrong.push_back(facts + " gives " + std::to_string(subject.GetIcon()));
      }
    }
  }

  EXPECT_EQ(wrong, std::vector<std::string>());
  for (std::size_t row = 0; row < met.size(); ++row) {
    const bool needsCollapsing = s_icons.at(row).result >= 32 && s_icons.at(row).result <= 42;
    EXPECT_EQ(met.at(row) > 0, isCollapsing || !needsCollapsing) << s_icons.at(row).facts;
  }
}

INSTANTIATE_TEST_SUITE_P(WithGroups, TypeIconTable, testing::Bool(),
                         [](const auto& test) { return test.param ? "Collapsed" : "Open"; });

}  // namespace
