#pragma once
#include "foundation/String.h"
#include "xml/LocatorDocuments.h"
#include <vector>

namespace Tallymoor {

class HTMLTag;
class WebPage;

/// A cell of a table row as the user sees it on a page.
struct ExampleCell {
  ColumnType type;
  String text;
};

/// Finds the places on a page where all texts of an example row occur together.
///
/// A text can occur in several tags. The tags of the rarest text are tried one by one: the nearest tag around
/// it that also contains the other texts is a place.
class ExampleRows {
public:
  using Tags = std::vector<const HTMLTag*>;
  struct Place {
    const HTMLTag* around; ///< The row, or the table if its rows are not closed.
    Tags cells;            ///< One for each text.
  };
  /// Maximum depth of a cell below its row or table.
  static constexpr std::size_t MOST_LEVELS = 12;

  /// The page is not owned and must outlive this object.
  ExampleRows(const WebPage& page, const std::vector<ExampleCell>& example);

  /// In page order; empty if the texts never occur together.
  const std::vector<Place>& places() const { return m_places; }
  /// Why a text was not found. Empty if each text is in a tag.
  const String& reason() const { return m_reason; }

  /// The child of top that is tag or contains it. Null if tag is not inside top or too deep in it.
  static const HTMLTag* childAround(const HTMLTag* tag, const HTMLTag& top);

private:
  /// Fills m_candidates. False if a text is missing.
  bool findTexts(const WebPage& page, const std::vector<ExampleCell>& example);
  void findPlaces();
  Place placeAround(const HTMLTag* cell) const;
  Tags cellsIn(const HTMLTag& around) const;

  std::vector<Tags> m_candidates; ///< For each text, the tags that contain it.
  std::vector<Place> m_places;
  String m_reason;
};

} // namespace Tallymoor
