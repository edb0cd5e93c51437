#pragma once
#include "foundation/UserInteraction.h"
#include "market/HTTPClient.h"
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <vector>

namespace Tallymoor::Bench {

/// Keeps the gateway offline from the start.
class NoConnection : public HTTPClient {
public:
  void goOnline() override { fail(); }
  HTTPAnswer get(const URL&, const HTTPHeaders&, const std::stop_token&) override { fail(); }
  void setBodyLimit(std::size_t) override {}

private:
  [[noreturn]] static void fail() { throw HTTPException(u"NoConnection - there is no network here"); }
};

class NoProgress : public Progress {
public:
  void setTotal(unsigned) override {}
  void step(unsigned, const String&) override {}
  void setText(const String&) override {}
  bool isCancelled() const override { return false; }
};

/// No user: lengthy work runs at once. A question ends the program, because none is expected.
class NoUser : public UserInteraction {
public:
  NoUser() { setInstance(this); }
  ~NoUser() override { setInstance(nullptr); }
  void information(const String& text) override { stop(text); }
  bool question(const String& text) override { stop(text); }
  void warning(const String& text) override { stop(text); }
  void error(const String& text) override { stop(text); }
  void reportException(const String&, const Exception& failure) override { stop(failure.message()); }
  void setStatusText(const String&) override {}
  void setNormalStatusText(const String&) override {}
  void beginWait() override {}
  void endWait() override {}
  void warnOnce(const String&, const String&, const String&, int) override {}
  void warningOver(const String&) override {}
  std::optional<std::size_t> chooseFromList(const String& title, const String&,
                                            const std::vector<String>&) override {
    stop(title);
  }
  std::optional<Date> askDate(const String& title, const String&, const Date&) override { stop(title); }
  std::optional<WholeRatio> askRatio(const String&, const String& heading, const String&, std::int32_t,
                                     const WholeRatio&) override {
    stop(heading);
  }
  bool runLengthy(const String&, const String&, unsigned, HasLengthyFunctions& work, int argument) override {
    NoProgress progress;
    work.runLengthyFunction(progress, argument);
    return true;
  }

private:
  [[noreturn]] static void stop(const String& text) {
    std::fprintf(stderr, "unexpected question: %s\n", text.toUTF8().c_str());
    std::abort();
  }
};

} // namespace Tallymoor::Bench
