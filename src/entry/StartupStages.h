#pragma once

namespace Tallymoor {

/// The sections of the start-up wizard, in their order.
enum StartupStage {
  STAGE_HELD = 0, ///< shares held at the start date, and before them the cash of that day
  STAGE_BOUGHT,
  STAGE_DIVIDENDS,
  STAGE_SOLD,
  STAGE_INTEREST,
  STAGE_DEPOSITS,
  STAGE_WITHDRAWALS,
  STAGE_COUNT
};

/// The texts of a section.
struct StartupStageTexts {
  const char16_t* title; ///< of the page between its entries
  const char16_t* text;
  const char16_t* question;
  const char16_t* help;
  const char16_t* entryTitle; ///< of the form for an entry
  const char16_t* entryDescription;
};

const StartupStageTexts& startupStageTexts(int stage);

} // namespace Tallymoor
