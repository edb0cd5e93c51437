#pragma once
#include "foundation/UserInteraction.h"
#include "support/StringPrinting.h"
#include <deque>
#include <mutex>
#include <vector>

namespace Tallymoor {

/// A user for tests without windows. Answers are scripted in the order in which they will be asked for; every
/// call is recorded. A question without a scripted answer fails the test (and is answered with No or a
/// cancel); so does an answer that nobody asked for, at the end. Takes the place of the windows while it
/// lives. Safe on any thread.
class FakeUserInteraction : public UserInteraction {
public:
  enum class Kind {
    Information,
    Question,
    Warning,
    Error,
    Status,
    NormalStatus,
    BeginWait,
    EndWait,
    WarnOnce,
    WarningOver,
    ChooseFromList,
    AskDate,
    AskRatio,
    Lengthy
  };

  /// One call: its text (the heading of a choice, date or ratio), its caption or title where it has one.
  struct Call {
    Kind kind;
    String text = {};
    String title = {};
    String key = {};                      ///< of warnOnce
    int level = 0;                        ///< of warnOnce
    std::vector<String> entries = {};     ///< of a choice
    String remark = {};                   ///< of a ratio
    std::int32_t maximum = 0;             ///< of a ratio
    WholeRatio ratio = {};                ///< that was proposed
    std::optional<Date> initialDate = {}; ///< of a date
  };

  FakeUserInteraction();
  ~FakeUserInteraction() override;

  void answerQuestion(bool yes);
  /// Nothing is a cancel, here and below.
  void answerChoice(std::optional<std::size_t> index);
  void answerDate(std::optional<Date> date);
  void answerRatio(std::optional<WholeRatio> ratio);
  void answerRatio(std::int32_t first) { answerRatio(WholeRatio{first, 1}); }
  /// The progress of lengthy work tells from this step on that the user cancelled.
  void cancelLengthyAfter(unsigned steps);

  std::vector<Call> calls() const;
  std::vector<Call> calls(Kind kind) const;
  /// Texts of the calls of a kind, in order.
  std::vector<String> texts(Kind kind) const;
  void clearCalls();
  /// Wait cursors that have begun and not ended.
  int openWaits() const;

  void information(const String& text) override;
  bool question(const String& text) override;
  void warning(const String& text) override;
  void error(const String& text) override;
  void reportException(const String& context, const Exception& exception) override;
  void setStatusText(const String& text) override;
  void setNormalStatusText(const String& text) override;
  void beginWait() override;
  void endWait() override;
  void warnOnce(const String& text, const String& caption, const String& key, int level) override;
  void warningOver(const String& key) override;
  std::optional<std::size_t> chooseFromList(const String& title, const String& heading,
                                            const std::vector<String>& entries) override;
  std::optional<Date> askDate(const String& title, const String& heading, const Date& initial) override;
  std::optional<WholeRatio> askRatio(const String& title, const String& heading, const String& remark,
                                     std::int32_t maximum, const WholeRatio& initial) override;
  bool runLengthy(const String& caption, const String& heading, unsigned steps, HasLengthyFunctions& work,
                  int argument) override;

private:
  void record(Call call);
  template <typename Answer>
  Answer next(std::deque<Answer>& answers, const String& asked, Answer none);

  mutable std::mutex m_mutex;
  std::vector<Call> m_calls;
  std::deque<bool> m_questions;
  std::deque<std::optional<std::size_t>> m_choices;
  std::deque<std::optional<Date>> m_dates;
  std::deque<std::optional<WholeRatio>> m_ratios;
  std::optional<unsigned> m_cancelAfter;
  int m_openWaits = 0;
};

} // namespace Tallymoor
