#include "views/ShownEvents.h"
#include <utility>

namespace Tallymoor {

ShownEvents::Shown& ShownEvents::add(std::unique_ptr<Shown> shown) {
  return *m_events.emplace_back(std::move(shown));
}

const ShownEvents::Shown* ShownEvents::find(const XMLEvent& event) {
  if (m_next < m_events.size() && m_events[m_next] && m_events[m_next]->data.event == &event) {
    m_found = m_next++;
    return m_events[m_found].get();
  }
  if (m_next == m_events.size() && m_places.empty())
    return nullptr; // all were met in their order, each of them once
  if (m_places.empty())
    notePlaces();
  const auto place = m_places.find(&event);
  if (place == m_places.end())
    return nullptr;
  m_found = place->second;
  m_next = m_found + 1;
  return m_events[m_found].get();
}

std::unique_ptr<ShownEvents::Shown> ShownEvents::takeFound() {
  return std::move(m_events[m_found]);
}

void ShownEvents::notePlaces() {
  for (std::size_t place = 0; place < m_events.size(); ++place)
    if (m_events[place])
      m_places.try_emplace(m_events[place]->data.event, place);
}

} // namespace Tallymoor
