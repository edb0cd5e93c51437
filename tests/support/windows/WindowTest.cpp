#include "support/windows/WindowTest.h"
#include "support/windows/PendingEvents.h"
#include "widgets/PacedWakeUp.h"
#include "widgets/ProgressDialog.h"
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fxkeys.h>
#include <stdexcept>
#include <unistd.h>

namespace Tallymoor {

namespace {

constexpr FXuint TICK_MILLISECONDS = 4;
/// Ticks (some seconds in total) after which an unexpected modal window is cancelled.
constexpr unsigned PATIENCE = 1500;
constexpr std::chrono::seconds LONGEST_WAIT(30);
/// A test that takes longer hangs outside the toolkit's event loop.
constexpr unsigned LONGEST_TEST_SECONDS = 150;

extern "C" void testHangs(int) {
  constexpr char MESSAGE[] = "A window test has not come to its end; giving up.\n";
  const auto written = write(STDERR_FILENO, MESSAGE, sizeof MESSAGE - 1);
  _exit(written > 0 ? 3 : 4);
}

std::unique_ptr<FXApp> makeApplication() {
  if (!std::getenv("DISPLAY"))
    throw std::runtime_error("window tests need a display: run them under xvfb-run");
  static char name[] = "window_test";
  static char* arguments[] = {name, nullptr}; // The application keeps this pointer.
  int count = 1;
  auto app = std::make_unique<FXApp>("Tallymoor", "Brindlecove");
  app->init(count, arguments);
  return app;
}

FXEvent keyEvent(FXuint type, FXuint code, FXuint state, const std::string& text = std::string()) {
  FXEvent event{};
  event.type = type;
  event.code = static_cast<FXint>(code);
  event.state = state;
  event.text = text.c_str();
  event.moved = FALSE;
  return event;
}

/// The widget's own text; empty if it has none.
std::string shownText(FXWindow& window) {
  if (auto* label = dynamic_cast<FXLabel*>(&window))
    return label->getText().text();
  if (auto* caption = dynamic_cast<FXMenuCaption*>(&window))
    return caption->getText().text();
  if (auto* group = dynamic_cast<FXGroupBox*>(&window))
    return group->getText().text();
  return std::string();
}

std::string tipOf(FXWindow& window) {
  auto* label = dynamic_cast<FXLabel*>(&window);
  return label ? label->getTipText().text() : std::string();
}

bool isButton(FXWindow& window) {
  return dynamic_cast<FXButton*>(&window) || dynamic_cast<FXCheckButton*>(&window) ||
         dynamic_cast<FXRadioButton*>(&window) || dynamic_cast<FXMenuCommand*>(&window);
}

void eachWindow(FXWindow& in, const std::function<void(FXWindow&)>& visit) {
  visit(in);
  for (FXWindow* child = in.getFirst(); child; child = child->getNext())
    eachWindow(*child, visit);
}

/// The text of a message box: the last label before its buttons.
std::string boxText(FXWindow& box) {
  std::string text;
  eachWindow(box, [&](FXWindow& window) {
    if (dynamic_cast<FXLabel*>(&window) && !isButton(window) && !shownText(window).empty())
      text = shownText(window);
  });
  return text;
}

/// Splits a UTF-8 text into characters with their code points.
std::vector<std::pair<FXuint, std::string>> characters(const std::string& text) {
  std::vector<std::pair<FXuint, std::string>> found;
  const FXString all(text.c_str());
  for (FXint at = 0; at < all.length(); at = all.inc(at))
    found.emplace_back(all.wc(at), std::string(all.text() + at, static_cast<std::size_t>(all.inc(at) - at)));
  return found;
}

} // namespace

/// Receives the timer that looks for modal windows. It runs in every event loop, including modal ones.
class WindowTest::Driver : public FXObject {
public:
  explicit Driver(WindowTest& test) : m_test(test) {}
  long handle(FXObject*, FXSelector, void*) override {
    m_test.tick();
    return 1;
  }

private:
  WindowTest& m_test;
};

WindowTest::WindowTest() : m_app(makeApplication()), m_driver(std::make_unique<Driver>(*this)) {
  PacedWakeUp::setRest(0); // what prices change is looked at as soon as events have passed
}

WindowTest::~WindowTest() {
  m_app->removeTimeout(m_driver.get(), 0);
}

std::unique_ptr<MainWindow> WindowTest::makeWindow(FXApp* app) {
  return std::make_unique<TestWindow>(app);
}

void WindowTest::SetUp() {
  std::signal(SIGALRM, testHangs);
  alarm(LONGEST_TEST_SECONDS);
  m_window = makeWindow(m_app.get());
  startTicking(); // A window may open a modal window while it is created.
  m_app->create();
  letEventsPass();
}

void WindowTest::TearDown() {
  for (const Awaited& awaited : m_awaited)
    ADD_FAILURE() << "this window never opened: " << awaited.text;
  m_window.reset();
  alarm(0);
}

void WindowTest::startTicking() {
  m_app->addTimeout(m_driver.get(), 0, TICK_MILLISECONDS);
}

void WindowTest::tick() {
  // Restart the timer first: the step may open a modal loop with further windows.
  startTicking();
  FXWindow* modal = m_app->getModality() == MODAL_FOR_NONE ? nullptr : m_app->getModalWindow();
  const bool inItsStep = std::find(m_inStep.begin(), m_inStep.end(), modal) != m_inStep.end();
  if (!modal || !modal->shown() || inItsStep)
    m_strange = nullptr;
  else
    meet(*modal);
}

void WindowTest::meet(FXWindow& modal) {
  if (!m_awaited.empty() && matches(modal, m_awaited.front())) {
    m_strange = nullptr;
    takeStep(modal);
    return;
  }
  if (m_strange != &modal) {
    m_strange = &modal;
    m_strangeTicks = 0;
  }
  if (dynamic_cast<ProgressDialog*>(&modal) || ++m_strangeTicks < PATIENCE)
    return;
  const std::string expected = m_awaited.empty() ? "nothing" : m_awaited.front().text;
  ADD_FAILURE() << "awaited " << expected << ", but this window is open: " << title(modal) << ": "
                << boxText(modal);
  m_strange = nullptr;
  refuse(modal);
}

void WindowTest::takeStep(FXWindow& modal) {
  const Awaited awaited = m_awaited.front();
  m_awaited.pop_front();
  if (dynamic_cast<FXMessageBox*>(&modal))
    m_boxes.push_back(boxText(modal));
  m_inStep.push_back(&modal);
  try {
    awaited.step(modal);
  } catch (const std::exception& failure) {
    ADD_FAILURE() << "in the step for " << awaited.text << ": " << failure.what();
    refuse(modal);
  } catch (const Exception& failure) {
    ADD_FAILURE() << "in the step for " << awaited.text << ": " << failure.description().toUTF8();
    refuse(modal);
  }
  m_inStep.pop_back();
}

bool WindowTest::matches(FXWindow& window, const Awaited& awaited) {
  if (awaited.isBox)
    return dynamic_cast<FXMessageBox*>(&window) && boxText(window) == awaited.text;
  return title(window) == awaited.text || shows(window, awaited.text);
}

void WindowTest::refuse(FXWindow& window) {
  if (auto* popup = dynamic_cast<FXPopup*>(&window))
    popup->popdown();
  else
    window.handle(&window, FXSEL(SEL_COMMAND, FXDialogBox::ID_CANCEL), nullptr);
}

void WindowTest::whenModal(const std::string& titleOrText, Step step) {
  m_awaited.push_back({titleOrText, false, std::move(step)});
}

void WindowTest::answer(const std::string& text, const std::string& label) {
  m_awaited.push_back({text, true, [this, label](FXWindow& box) { press(box, label); }});
}

bool WindowTest::runUntil(const std::function<bool()>& condition) {
  const auto end = std::chrono::steady_clock::now() + LONGEST_WAIT;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) {
      ADD_FAILURE() << "what was waited for did not come";
      return false;
    }
    m_app->runOneEvent(TRUE);
  }
  return true;
}

void WindowTest::letEventsPass() {
  bool hasWorked = false;
  const auto handleEvents = [&] {
    handlePendingEvents(*m_app);
    for (; awaitBackgroundWork(); hasWorked = true)
      handlePendingEvents(*m_app);
  };
  handleEvents();
  m_app->repaint();
  handleEvents();
  if (hasWorked)
    letEventsPass(); // what has come may change the layout
}

FXWindow* WindowTest::findButton(FXWindow& in, const std::string& label) {
  FXWindow* found = nullptr;
  eachWindow(in, [&](FXWindow& window) {
    if (!found && isButton(window) && (shownText(window) == label || tipOf(window) == label))
      found = &window;
  });
  return found;
}

FXWindow& WindowTest::button(FXWindow& in, const std::string& label) {
  FXWindow* found = findButton(in, label);
  if (!found)
    throw std::runtime_error("no button \"" + label + "\"");
  return *found;
}

FXTextField& WindowTest::field(FXWindow& in, const std::string& label) {
  FXTextField* found = nullptr;
  eachWindow(in, [&](FXWindow& window) {
    if (!found && dynamic_cast<FXLabel*>(&window) && shownText(window) == label)
      for (FXWindow* next = window.getNext(); next && !found; next = next->getNext())
        found = find<FXTextField>(*next);
  });
  if (!found)
    throw std::runtime_error("no field \"" + label + "\"");
  return *found;
}

std::vector<std::string> WindowTest::labels(FXWindow& in) {
  std::vector<std::string> texts;
  eachWindow(in, [&](FXWindow& window) {
    const std::string text = shownText(window);
    if (!text.empty())
      texts.push_back(text);
  });
  return texts;
}

bool WindowTest::shows(FXWindow& in, const std::string& text) {
  const std::vector<std::string> all = labels(in);
  return std::any_of(all.begin(), all.end(),
                     [&](const std::string& label) { return label.find(text) != label.npos; });
}

std::string WindowTest::title(FXWindow& window) {
  auto* top = dynamic_cast<FXTopWindow*>(&window);
  return top ? top->getTitle().text() : std::string();
}

void WindowTest::press(FXWindow& in, const std::string& label) {
  press(button(in, label));
}

void WindowTest::press(FXWindow& button) {
  button.handle(&app(), FXSEL(SEL_UPDATE, 0), nullptr); // The toolkit does this after every event.
  if (!button.isEnabled())
    throw std::runtime_error("\"" + shownText(button) + "\" is disabled");
  FXEvent event = keyEvent(SEL_KEYPRESS, KEY_Return, 0);
  button.handle(m_app.get(), FXSEL(SEL_KEYPRESS, FXWindow::ID_HOTKEY), &event);
  button.handle(m_app.get(), FXSEL(SEL_KEYRELEASE, FXWindow::ID_HOTKEY), &event);
}

void WindowTest::type(FXTextField& field, const std::string& text) {
  if (!field.isEnabled() || !field.isEditable())
    throw std::runtime_error("the field can't be typed into");
  field.setFocus();
  field.selectAll();
  FXEvent clear = keyEvent(SEL_KEYPRESS, KEY_Delete, 0);
  field.handle(m_app.get(), FXSEL(SEL_KEYPRESS, 0), &clear);
  for (const auto& [code, bytes] : characters(text)) {
    FXEvent event = keyEvent(SEL_KEYPRESS, code, 0, bytes);
    field.handle(m_app.get(), FXSEL(SEL_KEYPRESS, 0), &event);
  }
}

void WindowTest::key(FXWindow& shell, FXuint code, FXuint state) {
  FXEvent down = keyEvent(SEL_KEYPRESS, code, state);
  shell.handle(m_app.get(), FXSEL(SEL_KEYPRESS, 0), &down);
  FXEvent up = keyEvent(SEL_KEYRELEASE, code, state);
  shell.handle(m_app.get(), FXSEL(SEL_KEYRELEASE, 0), &up);
}

} // namespace Tallymoor
