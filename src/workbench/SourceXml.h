#pragma once
#include "pages/FormatProposal.h"

namespace Tallymoor {

/// What a new source document says beside the format.
struct NewSource {
  String name;
  String codes = u"*"; ///< pattern of the codes that it serves
  String currency;     ///< of their prices; empty when unknown
  String tryCode;      ///< empty when none is known
  String address;      ///< with variables
};

/// A whole source document, indented, that reads answers in the proposed format.
String sourceDocument(const NewSource& source, const FormatProposal& proposal);

/// "<Column type="Close" at="$.close"/>"
String columnElement(const ColumnPlace& column);

/// "AdjustedClose", as in documents.
String columnName(AnswerColumn column);

} // namespace Tallymoor
