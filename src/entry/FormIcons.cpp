#include "entry/FormIcons.h"
#include "assets/Icons.h"

namespace Tallymoor {

FormIcons::FormIcons(FXApp* app)
    : m_search(std::make_unique<FXGIFIcon>(app, icons::search_gif)),
      m_calendar(std::make_unique<FXGIFIcon>(app, icons::calendar_gif)) {}

FormIcons::~FormIcons() = default;

} // namespace Tallymoor
