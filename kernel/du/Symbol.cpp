#include "du/Symbol.h"

#include <array>
#include <functional>
#include <mutex>
#include <unordered_set>

namespace du {
namespace {

struct TextHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view text) const noexcept { return std::hash<std::string_view>{}(text); }
};

/// One part of the table of all texts. Several shards keep threads that intern at the same time apart.
struct Shard {
  std::mutex mutex;
  std::unordered_set<std::string, TextHash, std::equal_to<>> texts;
};

constexpr std::size_t s_shardCount = 16;

/// Never destroyed, since static objects may read their symbols until the process ends.
std::array<Shard, s_shardCount>& GetShards()
{
  static auto& s_shards = *new std::array<Shard, s_shardCount>;
  return s_shards;
}

const std::string* Intern(std::string_view text)
{
  if (text.empty()) {
    return nullptr;
  }
  const std::size_t hash = TextHash{}(text);
  // The high bits choose the shard: the low ones choose the bucket inside of it.
  Shard& shard = GetShards()[(hash >> 48) % s_shardCount];
  const std::lock_guard lock(shard.mutex);
  const auto known = shard.texts.find(text);
  return known != shard.texts.end() ? &*known : &*shard.texts.emplace(text).first;
}

}  // namespace

Symbol::Symbol(const char* text) : m_text(text ? Intern(text) : nullptr) {}

Symbol::Symbol(std::string_view text) : m_text(Intern(text)) {}

bool operator<(const Symbol& a, const Symbol& b) noexcept
{
  return std::less<>{}(a.m_text, b.m_text);
}

}  // namespace du
