#include "workbench/DoubtQuestions.h"
#include "pages/AnswerFigures.h"
#include "workbench/AnswerShow.h"
#include "workbench/PageText.h"
#include "workbench/PlainOutput.h"
#include "workbench/WorkbenchFailure.h"
#include <istream>
#include <string>

namespace Tallymoor {

namespace {

using About = FormatDoubt::About;

String questionOf(const FormatDoubt& doubt) {
  const String example = inQuotes(doubt.example);
  switch (doubt.about) {
  case About::DateOrder:
    return u"Which day is " + example + u"?";
  case About::DecimalSign:
    return u"Does " + example + u" have a decimal point or a decimal comma?";
  case About::TimeZone:
    return u"In which time zone is the exchange? The day of " + example + u" depends on it.";
  case About::CloseColumn:
    break;
  }
  return u"Which of the numbers of a row is the close? The first row has " + doubt.example + u".";
}

/// What the example means with a choice; empty where that says nothing more than the choice.
String meaningOf(const FormatProposal& proposal, const FormatDoubt& doubt, const String& choice) {
  if (doubt.about == About::CloseColumn)
    return {};
  AnswerFormat format = proposal.format;
  settle(format, doubt.about, choice);
  const AnswerFigures figures(format);
  constexpr int DECIMALS = 4;
  if (doubt.about == About::DecimalSign)
    return u": " + String::fromDouble(figures.number(doubt.example).value_or(0.0), DECIMALS);
  return u": " + isoDay(figures.day(doubt.example));
}

bool isChoice(const FormatDoubt& doubt, const String& answer) {
  for (const String& choice : doubt.choices)
    if (choice == answer)
      return true;
  return doubt.about == About::TimeZone && !answer.empty();
}

} // namespace

const char* DoubtQuestions::optionOf(About about) {
  switch (about) {
  case About::DateOrder:
    return "--dates";
  case About::DecimalSign:
    return "--decimal";
  case About::TimeZone:
    return "--time-zone";
  case About::CloseColumn:
    break;
  }
  return "--close";
}

bool DoubtQuestions::settleAll(FormatProposal& proposal) const {
  for (const auto& [about, answer] : m_answers)
    try {
      settle(proposal.format, about, answer);
    } catch (const AnswerException& failure) {
      throw WorkbenchFailure(WorkbenchFailure::WRONG_COMMAND,
                             String(optionOf(about)) + u": " + failure.message());
    }
  bool isSettled = true;
  for (const FormatDoubt& doubt : proposal.doubts) {
    if (m_answers.contains(doubt.about))
      continue;
    showQuestion(proposal, doubt);
    isSettled = (m_input != nullptr && ask(proposal, doubt)) && isSettled;
    if (m_input == nullptr)
      showOptions(doubt);
  }
  return isSettled;
}

void DoubtQuestions::showQuestion(const FormatProposal& proposal, const FormatDoubt& doubt) const {
  m_out.line();
  m_out.line(u"Question: " + questionOf(doubt));
  std::size_t number = 0;
  for (const String& choice : doubt.choices)
    m_out.line(numberText(++number) + u". " + choice + meaningOf(proposal, doubt, choice), 1);
}

bool DoubtQuestions::ask(FormatProposal& proposal, const FormatDoubt& doubt) const {
  for (;;) {
    m_out.line(doubt.about == About::TimeZone ? u"Number, or another zone such as Europe/Vienna:"
                                              : u"Number:");
    std::string line;
    if (!std::getline(*m_input, line))
      return false;
    const String text = String(line.c_str()).trimmed();
    const std::int32_t number = text.toLong();
    const bool isNumber = number >= 1 && number <= std::ssize(doubt.choices);
    const String answer = isNumber ? doubt.choices[static_cast<std::size_t>(number) - 1] : text;
    try {
      if (isChoice(doubt, answer)) {
        settle(proposal.format, doubt.about, answer);
        return true;
      }
      m_out.line(u"That is none of the choices.");
    } catch (const AnswerException& failure) {
      m_out.line(failure.message());
    }
  }
}

void DoubtQuestions::showOptions(const FormatDoubt& doubt) const {
  m_out.line(u"Answer it with " + String(optionOf(doubt.about)) + u" " + inQuotes(doubt.choices.front()) +
                 (doubt.about == About::TimeZone ? u" or any other time zone" : u" or another choice") +
                 u", or with --ask.",
             1);
}

} // namespace Tallymoor
