#include "pages/AnswerTable.h"

namespace Tallymoor {

void AnswerException::typeName(String& text) const {
  text = u"AnswerException";
}

} // namespace Tallymoor
