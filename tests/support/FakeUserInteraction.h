#pragma once
#include "foundation/UserInteraction.h"
#include "support/StringPrinting.h"
#include <deque>
#include <mutex>
#include <vector>

namespace Tallymoor {

/// A simulated user. Answers are scripted in the order of the questions, and every call is recorded. A
/// question without an answer fails the test (and gets No or a cancel); so does an unused answer at the end.
/// Is the installed UserInteraction during its lifetime. Thread-safe.
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

  /// A call: its text (or the heading of a choice, date or ratio) and its caption or title, if any.
  struct Call {
    Kind kind;
    String text = {};
    String title = {};
    String key = {};                      ///< For warnOnce.
    int level = 0;                        ///< For warnOnce.
    std::vector<String> entries = {};     ///< For a choice.
    String remark = {};                   ///< For a ratio.
    std::int32_t maximum = 0;             ///< For a ratio.
    WholeRatio ratio = {};                ///< The proposed ratio.
    std::optional<Date> initialDate = {}; ///< For a date.
  };

  FakeUserInteraction();
  ~FakeUserInteraction() override;

  void answerQuestion(bool yes);
  /// An empty answer is a cancel, here and below.
  void answerChoice(std::optional<std::size_t> index);
  void answerDate(std::optional<Date> date);
  void answerRatio(std::optional<WholeRatio> ratio);
  void answerRatio(std::int32_t first) { answerRatio(WholeRatio{first, 1}); }
  /// Lengthy work is cancelled from this step on.
  void cancelLengthyAfter(unsigned steps);

  std::vector<Call> calls() const;
  std::vector<Call> calls(Kind kind) const;
  /// Texts of the calls of this kind, in order.
  std::vector<String> texts(Kind kind) const;
  void clearCalls();
  /// Number of wait cursors begun and not ended.
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
