#include "widgets/StopRequest.h"
#include "widgets/ProgressDialog.h"
// Behind the toolkit, whose names its macros would change.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/keysym.h>

namespace Tallymoor {

FXDEFMAP(StopRequest)
StopRequestMap[] = {
    FXMAPFUNC(SEL_TIMEOUT, StopRequest::ID_LOOP, StopRequest::onLoop),
};

FXIMPLEMENT(StopRequest, FXObject, StopRequestMap, ARRAYNUMBER(StopRequestMap))

namespace {

constexpr std::chrono::milliseconds BETWEEN_LOOKS{50};

struct Look {
  Window progress = 0; ///< 0 without a progress dialog
  Window cancel = 0;
  Atom closing = 0; ///< what a window manager sends for the close button
  bool found = false;
};

bool isPressOfCancel(const Look& look, XEvent& event) {
  // A window manager also sends messages to give the keyboard, and to see whether the program answers.
  if (event.type == ClientMessage)
    return event.xclient.window == look.progress &&
           static_cast<Atom>(event.xclient.data.l[0]) == look.closing;
  if (event.type == ButtonRelease)
    return event.xbutton.window == look.cancel;
  if (event.type != KeyPress)
    return false;
  const KeySym key = XLookupKeysym(&event.xkey, 0);
  return key == XK_Escape || key == XK_Return || key == XK_KP_Enter || key == XK_space;
}

/// True takes the event away.
Bool lookAt(Display*, XEvent* event, XPointer argument) {
  Look& look = *reinterpret_cast<Look*>(argument);
  if (look.progress != 0) {
    look.found = look.found || isPressOfCancel(look, *event);
    return False;
  }
  const bool isEscape = event->type == KeyPress && XLookupKeysym(&event->xkey, 0) == XK_Escape;
  look.found = look.found || isEscape;
  return isEscape ? True : False;
}

} // namespace

StopRequest::StopRequest(FXApp* app) : m_app(app) {}

StopRequest::~StopRequest() {
  if (m_app)
    m_app->removeTimeout(this, ID_LOOP);
}

bool StopRequest::isWanted() {
  if (std::this_thread::get_id() != m_thread)
    return false;
  if (wasWanted())
    return true;
  const auto now = std::chrono::steady_clock::now();
  if (now < m_nextLook)
    return false;
  m_nextLook = now + BETWEEN_LOOKS;
  if (isInEvents())
    want();
  return m_wanted;
}

void StopRequest::want() {
  m_wanted = true;
  m_app->addTimeout(this, ID_LOOP, 0);
}

bool StopRequest::isInEvents() {
  auto* display = static_cast<Display*>(m_app->getDisplay());
  if (!display)
    return false;
  Look look;
  if (m_progress) {
    look.progress = m_progress->id();
    look.cancel = m_progress->cancelButton().id();
    look.closing = XInternAtom(display, "WM_DELETE_WINDOW", False);
  }
  XEvent taken;
  XCheckIfEvent(display, &taken, &lookAt, reinterpret_cast<XPointer>(&look));
  return look.found;
}

long StopRequest::onLoop(FXObject*, FXSelector, void*) {
  m_wanted = false;
  m_nextLook = {};
  return 1;
}

} // namespace Tallymoor
