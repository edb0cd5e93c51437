#include "widgets/Column.h"
#include "foundation/NotYetKnown.h"
#include "widgets/Row.h"
#include "widgets/Table.h"
#include <utility>

namespace Tallymoor {

Column::Column(const String& title, Function function, CompareType compareType, bool defaultVisible,
               FXuint justify, bool editable)
    : m_title(title), m_function(function), m_justify(justify), m_defaultVisible(defaultVisible),
      m_compareType(compareType), m_editable(editable) {}

Column& Column::setToolTip(const String& text) {
  m_toolTip = text;
  return *this;
}

Column& Column::followPayloadAlone() {
  m_followsPayloadAlone = true;
  return *this;
}

void Column::outdate() {
  if (!m_followsPayloadAlone)
    ++m_generation;
}

String Column::operator()(Row& row) {
  // One cell that fails must not cost the others theirs.
  try {
    return result(row).shown();
  } catch (const NotYetKnown&) {
    return NOT_YET_KNOWN;
  } catch (...) {
    return u"error";
  }
}

const CellResult& Column::result(Row& row) {
  const auto known = m_cache.find(&row);
  const bool isKnown = known != m_cache.end() && known->second.generation == m_generation;
  const Cached& cached = isKnown ? known->second : compute(row);
  if (cached.failure)
    std::rethrow_exception(cached.failure);
  return *cached.result;
}

bool Column::renew(Row& row) {
  const auto known = m_cache.find(&row);
  if (known == m_cache.end()) {
    compute(row);
    return true;
  }
  // Another cell may have asked for it already.
  if (known->second.generation == m_generation)
    return true;
  const Cached before = std::move(known->second);
  const Cached& now = compute(row);
  return before.failure || now.failure || *before.result != *now.result;
}

Column::Cached& Column::compute(Row& row) {
  if (m_table && m_table->hasChangedRecords())
    throw Exception(u"Column::compute - the records of the row have changed");
  Cached computed;
  computed.generation = m_generation;
  try {
    computed.result.emplace(m_function(row));
  } catch (...) {
    computed.failure = std::current_exception();
    row.m_hasFailed = true;
  }
  return m_cache.insert_or_assign(&row, std::move(computed)).first->second;
}

} // namespace Tallymoor
