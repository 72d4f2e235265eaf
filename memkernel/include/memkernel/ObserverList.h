#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

namespace memkernel {

/// The observers of one subject, and the brackets around what they are told. Lives in its subject; owner's thread only.
///
/// A run is open for an observer from its first event on until the last `EndRun`; a single event is a run of its own.
/// Callbacks may add and remove any observer: one that is added hears the events that follow, one that is removed hears
/// nothing more. An event that is told from inside a callback waits until all observers have heard the present one.
///
/// The list owns no observer. It reports each membership to `dom::Observer`, so that an observer that is released while
/// it is on the list lives until the list is done with it.
template <typename ObserverT>
class ObserverList {
public:
  /// Bits of a choice of events; an observer that is added without a choice hears all.
  static constexpr unsigned int s_allEvents = ~0U;

  ObserverList() = default;
  ObserverList(const ObserverList&) = delete;
  ObserverList& operator=(const ObserverList&) = delete;
  ~ObserverList() { DropAll(); }

  /// False, and nothing done, if the observer is on the list, or the list has come to its end.
  bool Add(ObserverT& observer, unsigned int events = s_allEvents)
  {
    if (m_isDropped || _Find(&observer) != m_entries.size()) {
      return false;
    }
    m_entries.push_back({&observer, events, ++m_lastNumber, false});
    observer.AddRegistration();
    return true;
  }

  /// Ends an open run of the observer first. False if it is not on the list.
  template <typename AnyObserver>
  bool Remove(const AnyObserver& observer)
  {
    const IterationScope iteration(*this);
    if (!_Close(_Find(&observer))) {
      return false;
    }
    _Forget(_Find(&observer));
    return true;
  }

  /// Tells all observers that have chosen one of `events`, in the order in which they came, each inside its brackets.
  template <typename Call>
  void Tell(unsigned int events, Call call)
  {
    if (m_entries.empty()) {
      return;
    }
    if (m_isTelling) {
      m_waiting.push_back({events, m_lastNumber, std::move(call)});
      return;
    }
    const RunScope run(*this);
    _TellEach(events, m_lastNumber, call);
    while (!m_waiting.empty()) {
      const std::vector<Event> waiting = std::exchange(m_waiting, {});
      for (const Event& event : waiting) {
        _TellEach(event.events, event.lastNumber, event.call);
      }
    }
  }

  template <typename Call>
  void Tell(Call call)
  {
    Tell(s_allEvents, std::move(call));
  }

  /// Tells one observer a row of events in brackets: `source` is called with a function that takes one event and
  /// answers whether the observer is still on the list.
  template <typename Source>
  void Replay(ObserverT& observer, Source source)
  {
    const RunScope run(*this);
    const TellingScope telling(*this);
    source([&](const auto& call) {
      if (_Open(_Find(&observer))) {
        call(observer);
      }
      return _Find(&observer) != m_entries.size();
    });
  }

  /// Runs nest; the last `EndRun` closes the brackets.
  void BeginRun() { ++m_runs; }
  void EndRun()
  {
    if (--m_runs == 0) {
      _CloseAll();
    }
  }

  /// For the end of the subject: closes the brackets, tells each observer by `OnUnregister`, where it has that
  /// callback, and empties the list for good.
  void DropAll()
  {
    m_isDropped = true;
    m_waiting.clear();
    const IterationScope iteration(*this);
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
      _Close(i);
      if (ObserverT* observer = m_entries[i].observer) {
        _Forget(i);
        if constexpr (requires { observer->OnUnregister(); }) {
          observer->OnUnregister();
        }
      }
    }
  }

  [[nodiscard]] bool Contains(const ObserverT& observer) const { return _Find(&observer) != m_entries.size(); }
  /// Whether observers are being told of an event right now. False while `OnEndUpdate` runs.
  [[nodiscard]] bool IsTelling() const noexcept { return m_isTelling; }
  /// Whether `DropAll` was called: the subject may be dying, and must not make a reference to itself.
  [[nodiscard]] bool IsDropped() const noexcept { return m_isDropped; }
  [[nodiscard]] bool IsEmpty() const noexcept { return m_entries.empty(); }

private:
  struct Entry {
    /// Null once the observer has been removed; the entry goes when nobody iterates any more.
    ObserverT* observer;
    unsigned int events;
    std::uint64_t number;
    bool isOpen;
  };
  struct Event {
    unsigned int events;
    /// Observers that came later do not hear the event.
    std::uint64_t lastNumber;
    std::function<void(ObserverT&)> call;
  };

  class RunScope {
  public:
    explicit RunScope(ObserverList& list) : m_list(list) { m_list.BeginRun(); }
    ~RunScope() { m_list.EndRun(); }
    RunScope(const RunScope&) = delete;
    RunScope& operator=(const RunScope&) = delete;

  private:
    ObserverList& m_list;
  };
  /// Keeps the entries at their places.
  class IterationScope {
  public:
    explicit IterationScope(ObserverList& list) : m_list(list) { ++m_list.m_iterations; }
    ~IterationScope()
    {
      if (--m_list.m_iterations == 0) {
        m_list._ReleaseRemoved();
      }
    }
    IterationScope(const IterationScope&) = delete;
    IterationScope& operator=(const IterationScope&) = delete;

  private:
    ObserverList& m_list;
  };
  class TellingScope {
  public:
    explicit TellingScope(ObserverList& list) : m_iteration(list), m_list(list), m_before(list.m_isTelling)
    {
      m_list.m_isTelling = true;
    }
    ~TellingScope() { m_list.m_isTelling = m_before; }
    TellingScope(const TellingScope&) = delete;
    TellingScope& operator=(const TellingScope&) = delete;

  private:
    IterationScope m_iteration;
    ObserverList& m_list;
    bool m_before;
  };

  /// The number of entries if the observer is not on the list.
  template <typename AnyObserver>
  [[nodiscard]] std::size_t _Find(const AnyObserver* observer) const
  {
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [&](const Entry& entry) { return entry.observer == observer; });
    return static_cast<std::size_t>(found - m_entries.begin());
  }

  template <typename Call>
  void _TellEach(unsigned int events, std::uint64_t lastNumber, const Call& call)
  {
    const TellingScope telling(*this);
    for (std::size_t i = 0; i < m_entries.size() && m_entries[i].number <= lastNumber; ++i) {
      if ((m_entries[i].events & events) != 0 && _Open(i)) {
        call(*m_entries[i].observer);
      }
    }
  }

  /// Opens the run of an entry. False for an entry that is gone or goes meanwhile.
  bool _Open(std::size_t index)
  {
    if (index == m_entries.size() || !m_entries[index].observer) {
      return false;
    }
    if (!m_entries[index].isOpen) {
      m_entries[index].isOpen = true;
      m_entries[index].observer->OnBeginUpdate();
    }
    return m_entries[index].observer != nullptr;
  }

  /// Closes the run of an entry. False for an entry that is gone or goes meanwhile.
  bool _Close(std::size_t index)
  {
    if (index == m_entries.size() || !m_entries[index].observer) {
      return false;
    }
    if (std::exchange(m_entries[index].isOpen, false)) {
      m_entries[index].observer->OnEndUpdate();
    }
    return m_entries[index].observer != nullptr;
  }

  void _CloseAll()
  {
    const IterationScope iteration(*this);
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
      _Close(i);
    }
  }

  void _Forget(std::size_t index)
  {
    m_removed.push_back(m_entries[index].observer);
    m_entries[index].observer = nullptr;
  }

  void _ReleaseRemoved()
  {
    if (m_removed.empty()) {
      return;
    }
    std::erase_if(m_entries, [](const Entry& entry) { return entry.observer == nullptr; });
    // Each may die here, and its destructor may come back to the list.
    for (ObserverT* observer : std::exchange(m_removed, {})) {
      observer->RemoveRegistration();
    }
  }

  std::vector<Entry> m_entries;
  std::vector<ObserverT*> m_removed;
  std::vector<Event> m_waiting;
  std::uint64_t m_lastNumber = 0;
  unsigned int m_runs = 0;
  unsigned int m_iterations = 0;
  bool m_isTelling = false;
  bool m_isDropped = false;
};

}  // namespace memkernel
