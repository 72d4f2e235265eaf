#pragma once

#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

#include "du/Hash.h"
#include "du/HashNextPrime.h"

namespace du {

/// Hash map whose entries stand on one list, so that walking it costs its entries and not its buckets, and whose order
/// is the same for the same history. Nodes of one bucket are adjacent, the newest first. One thread at a time.
///
/// References and iterators stay valid until their own entry is erased: growing relinks the nodes, it does not move
/// them. A cleared map has no bucket array at all until the next insertion.
template <typename K, typename V, typename Hash = du::hash<K>, typename Equal = du::equal_to<K>,
          typename Allocator = std::allocator<std::pair<const K, V>>>
class HashMap {
  struct Node {
    Node* prev = nullptr;
    Node* next = nullptr;
    std::pair<const K, V> entry;
  };

  /// The first and the last node of a bucket; both null for an empty one.
  struct Bucket {
    Node* first = nullptr;
    Node* last = nullptr;
  };

  template <bool IsConst>
  class Iterator {
  public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = std::pair<const K, V>;
    using difference_type = std::ptrdiff_t;
    using reference = std::conditional_t<IsConst, const value_type&, value_type&>;
    using pointer = std::conditional_t<IsConst, const value_type*, value_type*>;

    Iterator() noexcept = default;
    // clang-format off
    template <bool OtherIsConst>
      requires(IsConst && !OtherIsConst)
    Iterator(const Iterator<OtherIsConst>& other) noexcept  // NOLINT(google-explicit-constructor): as for pointers
        : m_node(other.m_node)
    {
    }
    // clang-format on

    reference operator*() const noexcept { return m_node->entry; }
    pointer operator->() const noexcept { return &m_node->entry; }
    Iterator& operator++() noexcept
    {
      m_node = m_node->next;
      return *this;
    }
    Iterator operator++(int) noexcept
    {
      Iterator before = *this;
      ++*this;
      return before;
    }
    friend bool operator==(const Iterator&, const Iterator&) noexcept = default;

  private:
    friend class HashMap;
    template <bool>
    friend class Iterator;
    explicit Iterator(Node* node) noexcept : m_node(node) {}

    Node* m_node = nullptr;
  };

public:
  using key_type = K;
  using mapped_type = V;
  using value_type = std::pair<const K, V>;
  using size_type = std::size_t;
  using iterator = Iterator<false>;
  using const_iterator = Iterator<true>;

  /// The bucket request of a map that is made without one.
  static constexpr size_type s_defaultBuckets = 100;

  /// An empty map with `HashNextPrime(buckets)` buckets.
  explicit HashMap(size_type buckets = s_defaultBuckets) : m_buckets(HashNextPrime(buckets)) {}

  /// Copies entries and their order.
  HashMap(const HashMap& other) : HashMap(WithoutBuckets())
  {
    m_buckets.resize(other.m_buckets.size());
    for (const value_type& entry : other) {
      Node* node = _CreateNode(entry);
      _LinkBefore(nullptr, node);
      _AppendToBucket(node);
    }
  }

  HashMap(HashMap&& other) noexcept : HashMap(WithoutBuckets()) { swap(other); }

  HashMap& operator=(const HashMap& other)
  {
    if (this != &other) {
      HashMap(other).swap(*this);
    }
    return *this;
  }

  HashMap& operator=(HashMap&& other) noexcept
  {
    if (this != &other) {
      clear();
      swap(other);
    }
    return *this;
  }

  ~HashMap() { _DestroyNodes(); }

  void swap(HashMap& other) noexcept
  {
    std::swap(m_buckets, other.m_buckets);
    std::swap(m_head, other.m_head);
    std::swap(m_tail, other.m_tail);
    std::swap(m_count, other.m_count);
  }

  [[nodiscard]] iterator begin() noexcept { return iterator(m_head); }
  [[nodiscard]] iterator end() noexcept { return iterator(); }
  [[nodiscard]] const_iterator begin() const noexcept { return const_iterator(m_head); }
  [[nodiscard]] const_iterator end() const noexcept { return const_iterator(); }

  [[nodiscard]] size_type size() const noexcept { return m_count; }
  [[nodiscard]] bool empty() const noexcept { return m_count == 0; }
  /// 0 after `clear`.
  [[nodiscard]] size_type bucket_count() const noexcept { return m_buckets.size(); }

  [[nodiscard]] iterator find(const K& key) { return iterator(_Find(key)); }
  [[nodiscard]] const_iterator find(const K& key) const { return const_iterator(_Find(key)); }
  [[nodiscard]] bool contains(const K& key) const { return _Find(key) != nullptr; }

  /// Makes room for `count` entries: when that is more than there are buckets, the table grows to
  /// `HashNextPrime(count)` and all nodes are linked anew, taken from the tail to the head and each put in front of its
  /// bucket.
  void reserve(size_type count)
  {
    if (count <= m_buckets.size()) {
      return;
    }
    std::vector<Bucket, BucketAllocator>(HashNextPrime(count)).swap(m_buckets);
    Node* node = m_tail;
    m_head = nullptr;
    m_tail = nullptr;
    while (node) {
      Node* before = node->prev;
      _LinkIntoBucket(node);
      node = before;
    }
  }

  /// Enters the value unless the key is there already; room for one more is made in both cases. The result is the entry
  /// of the key and whether it is new.
  std::pair<iterator, bool> insert(const value_type& entry) { return try_emplace(entry.first, entry.second); }

  template <typename... Args>
  std::pair<iterator, bool> try_emplace(const K& key, Args&&... args)
  {
    reserve(m_count + 1);
    if (Node* known = _Find(key)) {
      return {iterator(known), false};
    }
    Node* node = _CreateNode(std::piecewise_construct, std::forward_as_tuple(key),
                             std::forward_as_tuple(std::forward<Args>(args)...));
    _LinkIntoBucket(node);
    ++m_count;
    return {iterator(node), true};
  }

  /// Enters or overwrites the value; an overwritten entry keeps its place.
  template <typename M>
  std::pair<iterator, bool> insert_or_assign(const K& key, M&& value)
  {
    const auto result = try_emplace(key, std::forward<M>(value));
    if (!result.second) {
      // The value is still whole: nothing was made from it when the key was found.
      result.first->second = std::forward<M>(value);
    }
    return result;
  }

  V& operator[](const K& key) { return try_emplace(key).first->second; }

  /// Takes the entry out, if there is one, and returns how many went. The bucket array keeps its size.
  size_type erase(const K& key)
  {
    Node* node = _Find(key);
    if (!node) {
      return 0;
    }
    _Erase(node);
    return 1;
  }

  /// Takes out the entry and returns the one after it.
  iterator erase(const_iterator position)
  {
    Node* next = position.m_node->next;
    _Erase(position.m_node);
    return iterator(next);
  }

  /// Takes out all entries, and the bucket array with them.
  void clear() noexcept
  {
    _DestroyNodes();
    m_head = nullptr;
    m_tail = nullptr;
    m_count = 0;
    std::vector<Bucket, BucketAllocator>().swap(m_buckets);
  }

private:
  using NodeAllocator = typename std::allocator_traits<Allocator>::template rebind_alloc<Node>;
  using BucketAllocator = typename std::allocator_traits<Allocator>::template rebind_alloc<Bucket>;
  using NodeTraits = std::allocator_traits<NodeAllocator>;

  struct WithoutBuckets {};

  explicit HashMap(WithoutBuckets /*tag*/) noexcept {}

  /// Gives the memory of a node back unless an entry was made in it.
  struct FreeMemory {
    void operator()(Node* node) const noexcept
    {
      NodeAllocator allocator;
      NodeTraits::deallocate(allocator, node, 1);
    }
  };

  template <typename... Args>
  [[nodiscard]] Node* _CreateNode(Args&&... args)
  {
    NodeAllocator allocator;
    std::unique_ptr<Node, FreeMemory> memory(NodeTraits::allocate(allocator, 1));
    ::new (static_cast<void*>(memory.get())) Node{nullptr, nullptr, value_type(std::forward<Args>(args)...)};
    return memory.release();
  }

  void _DestroyNode(Node* node) noexcept
  {
    std::destroy_at(node);
    FreeMemory()(node);
  }

  void _DestroyNodes() noexcept
  {
    for (Node* node = m_head; node;) {
      _DestroyNode(std::exchange(node, node->next));
    }
  }

  [[nodiscard]] Bucket& _BucketOf(const K& key) { return m_buckets[Hash{}(key) % m_buckets.size()]; }

  [[nodiscard]] Node* _Find(const K& key) const
  {
    if (m_buckets.empty()) {
      return nullptr;
    }
    const Bucket& bucket = m_buckets[Hash{}(key) % m_buckets.size()];
    for (Node* node = bucket.first; node; node = node == bucket.last ? nullptr : node->next) {
      if (Equal{}(node->entry.first, key)) {
        return node;
      }
    }
    return nullptr;
  }

  /// In front of the bucket's nodes, or at the front of the list when the bucket is empty.
  void _LinkIntoBucket(Node* node)
  {
    Bucket& bucket = _BucketOf(node->entry.first);
    _LinkBefore(bucket.first ? bucket.first : m_head, node);
    bucket.first = node;
    if (!bucket.last) {
      bucket.last = node;
    }
  }

  void _AppendToBucket(Node* node)
  {
    Bucket& bucket = _BucketOf(node->entry.first);
    bucket.last = node;
    if (!bucket.first) {
      bucket.first = node;
    }
    ++m_count;
  }

  /// Null stands for the end of the list.
  void _LinkBefore(Node* position, Node* node) noexcept
  {
    node->next = position;
    node->prev = position ? position->prev : m_tail;
    (node->prev ? node->prev->next : m_head) = node;
    (position ? position->prev : m_tail) = node;
  }

  void _Erase(Node* node)
  {
    Bucket& bucket = _BucketOf(node->entry.first);
    if (bucket.first == node && bucket.last == node) {
      bucket = Bucket();
    } else if (bucket.first == node) {
      bucket.first = node->next;
    } else if (bucket.last == node) {
      bucket.last = node->prev;
    }
    (node->prev ? node->prev->next : m_head) = node->next;
    (node->next ? node->next->prev : m_tail) = node->prev;
    --m_count;
    _DestroyNode(node);
  }

  std::vector<Bucket, BucketAllocator> m_buckets;
  Node* m_head = nullptr;
  Node* m_tail = nullptr;
  size_type m_count = 0;
};

}  // namespace du
