#include "widgets/GuiWakeUp.h"
#include <algorithm>
#include <deque>
#include <fx.h>
#include <mutex>

namespace Tallymoor {

namespace {

/// The one signal behind all wake-ups: a signal of their own would cost each two file descriptors, and the
/// toolkit watches none from 1024 up. Born with the first receiver, gone with the last.
class SignalHub : public FXObject {
  FXDECLARE_ABSTRACT(SignalHub)
public:
  enum { ID_WAKE = 1 };
  using Handlers = std::deque<std::pair<const void*, std::function<void()>*>>;

  explicit SignalHub(FXApp* app) : m_signal(app, this, ID_WAKE) {}

  static std::shared_ptr<SignalHub> shared(FXApp* app);
  /// Any thread. The function stays the receiver's.
  void wake(const void* receiver, std::function<void()>* onWake);
  void forget(const void* receiver);
  long onSignal(FXObject*, FXSelector, void*);

private:
  static bool holds(const Handlers& handlers, const void* receiver);
  void takeBatch();
  std::function<void()> takeNext();

  std::mutex m_mutex;
  Handlers m_woken; ///< guarded by m_mutex
  Handlers m_batch; ///< what the GUI thread is about to serve; guarded by m_mutex
  FXGUISignal m_signal;
};

FXDEFMAP(SignalHub)
signalHubMap[] = {
    FXMAPFUNC(SEL_IO_READ, SignalHub::ID_WAKE, SignalHub::onSignal),
};

FXIMPLEMENT_ABSTRACT(SignalHub, FXObject, signalHubMap, ARRAYNUMBER(signalHubMap))

std::shared_ptr<SignalHub> SignalHub::shared(FXApp* app) {
  static std::weak_ptr<SignalHub> theHub;
  std::shared_ptr<SignalHub> hub = theHub.lock();
  if (!hub)
    theHub = hub = std::make_shared<SignalHub>(app);
  return hub;
}

void SignalHub::wake(const void* receiver, std::function<void()>* onWake) {
  const std::lock_guard lock(m_mutex);
  if (holds(m_woken, receiver))
    return;
  m_woken.emplace_back(receiver, onWake);
  m_signal.signal();
}

void SignalHub::forget(const void* receiver) {
  const std::lock_guard lock(m_mutex);
  const auto isReceiver = [receiver](const auto& entry) { return entry.first == receiver; };
  std::erase_if(m_woken, isReceiver);
  std::erase_if(m_batch, isReceiver);
}

long SignalHub::onSignal(FXObject*, FXSelector, void*) {
  // A handler may delete any receiver, the last one too, and with it this object.
  const std::shared_ptr<SignalHub> alive = shared(m_signal.getApp());
  takeBatch();
  while (const std::function<void()> next = takeNext())
    next();
  return 1;
}

bool SignalHub::holds(const Handlers& handlers, const void* receiver) {
  return std::any_of(handlers.begin(), handlers.end(),
                     [receiver](const auto& entry) { return entry.first == receiver; });
}

/// A wake-up from within a handler is served at the next signal, after other events.
void SignalHub::takeBatch() {
  const std::lock_guard lock(m_mutex);
  m_batch.insert(m_batch.end(), m_woken.begin(), m_woken.end());
  m_woken.clear();
}

/// A copy: the handler may delete its receiver.
std::function<void()> SignalHub::takeNext() {
  const std::lock_guard lock(m_mutex);
  if (m_batch.empty())
    return {};
  std::function<void()> next = *m_batch.front().second;
  m_batch.pop_front();
  return next;
}

} // namespace

class GuiWakeUp::Receiver {
public:
  Receiver(FXApp* app, std::function<void()> onWake)
      : m_hub(SignalHub::shared(app)), m_onWake(std::move(onWake)) {}
  ~Receiver() { m_hub->forget(this); }
  Receiver(const Receiver&) = delete;
  Receiver& operator=(const Receiver&) = delete;

  void wake() { m_hub->wake(this, &m_onWake); }

private:
  std::shared_ptr<SignalHub> m_hub;
  std::function<void()> m_onWake;
};

GuiWakeUp::GuiWakeUp(FXApp* app, std::function<void()> onWake)
    : m_receiver(std::make_unique<Receiver>(app, std::move(onWake))) {}

GuiWakeUp::~GuiWakeUp() = default;

void GuiWakeUp::wake() {
  m_receiver->wake();
}

} // namespace Tallymoor
