#include "workbench/ExampleRows.h"
#include "pages/HTMLTag.h"
#include "workbench/PageText.h"
#include "workbench/TextOnPage.h"
#include "workbench/WebPage.h"
#include <algorithm>
#include <utility>

namespace Tallymoor {

namespace {

constexpr std::ptrdiff_t MOST_CANDIDATES = 50; ///< Tags tried per text and place.
constexpr std::size_t MOST_PLACES = 20;

std::size_t depthOf(const HTMLTag* tag) {
  std::size_t depth = 0;
  for (; tag != nullptr; tag = tag->parent())
    ++depth;
  return depth;
}

} // namespace

ExampleRows::ExampleRows(const WebPage& page, const std::vector<ExampleCell>& example) {
  if (findTexts(page, example))
    findPlaces();
}

const HTMLTag* ExampleRows::childAround(const HTMLTag* tag, const HTMLTag& top) {
  for (std::size_t level = 0; level <= MOST_LEVELS && tag != nullptr; ++level, tag = tag->parent())
    if (tag->parent() == &top)
      return tag;
  return nullptr;
}

bool ExampleRows::findTexts(const WebPage& page, const std::vector<ExampleCell>& example) {
  for (const ExampleCell& cell : example) {
    TextOnPage found(*page.root(), cell.text);
    Tags& tags = found.whole.empty() ? found.part : found.whole;
    if (tags.empty()) {
      m_reason = u"No tag contains the text " + inQuotes(cell.text) + u".\n" +
                 TextOnPage::whyNotInTags(page.text(), cell.text);
      return false;
    }
    m_candidates.push_back(std::move(tags));
  }
  return true;
}

void ExampleRows::findPlaces() {
  // If two rows have the same date, the texts can also be found across both rows. The tag around them is then
  // nearer to the root, so only the deepest places are kept.
  std::size_t deepest = 0;
  const Tags& rarest =
      *std::min_element(m_candidates.begin(), m_candidates.end(),
                        [](const Tags& left, const Tags& right) { return left.size() < right.size(); });
  for (const HTMLTag* const cell : rarest) {
    Place place = placeAround(cell);
    const std::size_t depth = depthOf(place.around);
    if (place.around == nullptr || depth < deepest)
      continue;
    if (depth > deepest)
      m_places.clear();
    deepest = depth;
    m_places.push_back(std::move(place));
  }
  m_places.resize(std::min(m_places.size(), MOST_PLACES));
}

/// The nearest tag around a cell that contains a tag for each text.
ExampleRows::Place ExampleRows::placeAround(const HTMLTag* cell) const {
  const HTMLTag* around = cell->parent();
  for (std::size_t level = 0; level < MOST_LEVELS && around != nullptr; ++level, around = around->parent()) {
    Tags cells = cellsIn(*around);
    if (!cells.empty())
      return {around, std::move(cells)};
  }
  return {nullptr, {}};
}

/// One tag for each text, in page order if possible. Empty if a text is missing.
ExampleRows::Tags ExampleRows::cellsIn(const HTMLTag& around) const {
  Tags cells;
  for (const Tags& candidates : m_candidates) {
    // The tags inside a tag follow it in memory.
    const auto start = std::lower_bound(candidates.begin(), candidates.end(), &around);
    const auto end = start + std::min(MOST_CANDIDATES, candidates.end() - start);
    const HTMLTag* chosen = nullptr;
    for (auto tag = start; tag != end; ++tag) {
      if (std::find(cells.begin(), cells.end(), *tag) != cells.end() || !childAround(*tag, around))
        continue;
      const bool isBehind = cells.empty() || *tag > cells.back();
      if (!chosen || isBehind)
        chosen = *tag;
      if (isBehind)
        break;
    }
    if (!chosen)
      return {};
    cells.push_back(chosen);
  }
  return cells;
}

} // namespace Tallymoor
