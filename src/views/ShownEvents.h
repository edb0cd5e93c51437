#pragma once
#include "foundation/Date.h"
#include "xml/ElementList.h"
#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

namespace Tallymoor {

class Row;
class SharePortfolioUser;
class XMLEvent;

/// What a row of recorded events is computed from. The event belongs to the records; a table that reads it is
/// told before it changes.
struct EventRow {
  XMLEvent* event = nullptr;
  const SharePortfolioUser* portfolio = nullptr;
  Date day; ///< of the event

  /// The event as the class that the table's events are of.
  template <class Event>
  Event& as() const {
    return elementAs<Event>(*event);
  }
};

/// The events that a table shows, in the order in which its last filling met them. The next one looks each up
/// again and takes out what stays. It meets them in nearly the same order, and there are thousands of them,
/// so an event is searched for only where the order has changed.
class ShownEvents {
public:
  struct Shown {
    EventRow data;
    Row* row;
    std::uint64_t stamp; ///< of the event, when its cells were computed
  };

  /// Behind the others.
  Shown& add(std::unique_ptr<Shown> shown);
  /// Null if the event was not shown or has been taken. Addresses alone are compared: the event may have
  /// gone.
  const Shown* find(const XMLEvent& event);
  /// Takes out what find has given last.
  std::unique_ptr<Shown> takeFound();

private:
  void notePlaces();

  std::vector<std::unique_ptr<Shown>> m_events; ///< null where it was taken
  std::size_t m_found = 0;
  std::size_t m_next = 0;                                    ///< behind the last that was found
  std::unordered_map<const XMLEvent*, std::size_t> m_places; ///< empty before the first search
};

} // namespace Tallymoor
