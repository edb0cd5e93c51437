#include "foundation/Exception.h"

namespace Tallymoor {

void Exception::description(String& text) const {
  typeName(text);
  text += u" : ";
  text += m_message;
}

String Exception::description() const {
  String text;
  description(text);
  return text;
}

void Exception::typeName(String& text) const {
  text = u"Exception";
}

void C_Exception::typeName(String& text) const {
  text = u"C Exception";
}

void XMLException::typeName(String& text) const {
  text = u"XMLException";
}

void HTTPException::typeName(String& text) const {
  text = u"HTTPException";
}

void HTMLException::typeName(String& text) const {
  text = u"HTMLException";
}

} // namespace Tallymoor
