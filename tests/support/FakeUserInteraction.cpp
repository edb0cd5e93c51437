#include "support/FakeUserInteraction.h"
#include <algorithm>
#include <gtest/gtest.h>

namespace Tallymoor {

namespace {

/// Counts steps and reports a cancel from a given step on.
class CountingProgress : public Progress {
public:
  explicit CountingProgress(std::optional<unsigned> cancelAfter) : m_cancelAfter(cancelAfter) {}

  void setTotal(unsigned) override {}
  void step(unsigned increment, const String&) override { m_steps += increment; }
  void setText(const String&) override {}
  bool isCancelled() const override { return m_cancelAfter && m_steps >= *m_cancelAfter; }

private:
  std::optional<unsigned> m_cancelAfter;
  unsigned m_steps = 0;
};

} // namespace

FakeUserInteraction::FakeUserInteraction() {
  UserInteraction::setInstance(this);
}

FakeUserInteraction::~FakeUserInteraction() {
  UserInteraction::setInstance(nullptr);
  EXPECT_TRUE(m_questions.empty()) << "a scripted answer to a question was not asked for";
  EXPECT_TRUE(m_choices.empty()) << "a scripted choice was not asked for";
  EXPECT_TRUE(m_dates.empty()) << "a scripted date was not asked for";
  EXPECT_TRUE(m_ratios.empty()) << "a scripted ratio was not asked for";
}

void FakeUserInteraction::answerQuestion(bool yes) {
  const std::lock_guard lock(m_mutex);
  m_questions.push_back(yes);
}

void FakeUserInteraction::answerChoice(std::optional<std::size_t> index) {
  const std::lock_guard lock(m_mutex);
  m_choices.push_back(index);
}

void FakeUserInteraction::answerDate(std::optional<Date> date) {
  const std::lock_guard lock(m_mutex);
  m_dates.push_back(date);
}

void FakeUserInteraction::answerRatio(std::optional<WholeRatio> ratio) {
  const std::lock_guard lock(m_mutex);
  m_ratios.push_back(ratio);
}

void FakeUserInteraction::cancelLengthyAfter(unsigned steps) {
  const std::lock_guard lock(m_mutex);
  m_cancelAfter = steps;
}

std::vector<FakeUserInteraction::Call> FakeUserInteraction::calls() const {
  const std::lock_guard lock(m_mutex);
  return m_calls;
}

std::vector<FakeUserInteraction::Call> FakeUserInteraction::calls(Kind kind) const {
  std::vector<Call> result = calls();
  std::erase_if(result, [kind](const Call& call) { return call.kind != kind; });
  return result;
}

std::vector<String> FakeUserInteraction::texts(Kind kind) const {
  std::vector<String> result;
  for (const Call& call : calls(kind))
    result.push_back(call.text);
  return result;
}

void FakeUserInteraction::clearCalls() {
  const std::lock_guard lock(m_mutex);
  m_calls.clear();
}

int FakeUserInteraction::openWaits() const {
  const std::lock_guard lock(m_mutex);
  return m_openWaits;
}

void FakeUserInteraction::record(Call call) {
  const std::lock_guard lock(m_mutex);
  m_calls.push_back(std::move(call));
}

template <typename Answer>
Answer FakeUserInteraction::next(std::deque<Answer>& answers, const String& asked, Answer none) {
  const std::lock_guard lock(m_mutex);
  if (answers.empty()) {
    ADD_FAILURE() << "no answer is scripted for: " << asked.toUTF8();
    return none;
  }
  const Answer answer = answers.front();
  answers.pop_front();
  return answer;
}

void FakeUserInteraction::information(const String& text) {
  record({.kind = Kind::Information, .text = text});
}

bool FakeUserInteraction::question(const String& text) {
  record({.kind = Kind::Question, .text = text});
  return next(m_questions, text, false);
}

void FakeUserInteraction::warning(const String& text) {
  record({.kind = Kind::Warning, .text = text});
}

void FakeUserInteraction::error(const String& text) {
  record({.kind = Kind::Error, .text = text});
}

void FakeUserInteraction::reportException(const String& context, const Exception& exception) {
  error(context + u" " + exception.description());
}

void FakeUserInteraction::setStatusText(const String& text) {
  record({.kind = Kind::Status, .text = text});
}

void FakeUserInteraction::setNormalStatusText(const String& text) {
  record({.kind = Kind::NormalStatus, .text = text});
}

void FakeUserInteraction::beginWait() {
  record({.kind = Kind::BeginWait});
  const std::lock_guard lock(m_mutex);
  ++m_openWaits;
}

void FakeUserInteraction::endWait() {
  record({.kind = Kind::EndWait});
  const std::lock_guard lock(m_mutex);
  --m_openWaits;
}

void FakeUserInteraction::warnOnce(const String& text, const String& caption, const String& key, int level) {
  record({.kind = Kind::WarnOnce, .text = text, .title = caption, .key = key, .level = level});
}

void FakeUserInteraction::warningOver(const String& key) {
  record({.kind = Kind::WarningOver, .key = key});
}

std::optional<std::size_t> FakeUserInteraction::chooseFromList(const String& title, const String& heading,
                                                               const std::vector<String>& entries) {
  record({.kind = Kind::ChooseFromList, .text = heading, .title = title, .entries = entries});
  const auto answer = next(m_choices, heading, {});
  EXPECT_TRUE(!answer || *answer < entries.size()) << "the scripted choice is not in the list";
  return answer;
}

std::optional<Date> FakeUserInteraction::askDate(const String& title, const String& heading,
                                                 const Date& initial) {
  record({.kind = Kind::AskDate, .text = heading, .title = title, .initialDate = initial});
  return next(m_dates, heading, {});
}

std::optional<WholeRatio> FakeUserInteraction::askRatio(const String& title, const String& heading,
                                                        const String& remark, std::int32_t maximum,
                                                        const WholeRatio& initial) {
  record({.kind = Kind::AskRatio,
          .text = heading,
          .title = title,
          .remark = remark,
          .maximum = maximum,
          .ratio = initial});
  const auto answer = next(m_ratios, heading, {});
  EXPECT_TRUE(!answer || (std::min(answer->first, answer->second) >= 1 &&
                          std::max(answer->first, answer->second) <= maximum))
      << "the scripted ratio is out of range";
  return answer;
}

bool FakeUserInteraction::runLengthy(const String& caption, const String& heading, unsigned,
                                     HasLengthyFunctions& work, int argument) {
  record({.kind = Kind::Lengthy, .text = heading, .title = caption});
  CountingProgress progress(m_cancelAfter);
  work.runLengthyFunction(progress, argument);
  return !progress.isCancelled();
}

} // namespace Tallymoor
