#pragma once
#include <fx.h>
#include <memory>

namespace Tallymoor {

/// The pictures on the small buttons of forms. Owned by the form, and there for as long as its buttons are.
class FormIcons {
public:
  explicit FormIcons(FXApp* app);
  ~FormIcons();

  FXIcon* search() const { return m_search.get(); }
  FXIcon* calendar() const { return m_calendar.get(); }

private:
  std::unique_ptr<FXIcon> m_search;
  std::unique_ptr<FXIcon> m_calendar;
};

} // namespace Tallymoor
