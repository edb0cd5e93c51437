#include "xml/CapitalRecord.h"
#include "foundation/Constants.h"
#include "xml/ElementLayout.h"

namespace Tallymoor {

XMLSharePortfolioCapitalRecord::XMLSharePortfolioCapitalRecord()
    : XMLElement(layoutOf<XMLSharePortfolioCapitalRecord>(u"SharePortfolioCapitalRecord")) {
  registerAndCreate(u"String", u"Name", newElement<XMLString>);
  markContentUnsafe(u"Name");
  registerSubElements(u"DayCap", u"DayCaps", XMLDayCap::create, false);
}

XMLDayCap::XMLDayCap() : XMLElement(layoutOf<XMLDayCap>(u"DayCap")) {
  registerAndCreate(u"Date", u"Date", newElement<XMLDate>);
  registerAndCreate(u"Constant", u"CashTotal", newElement<XMLConstant>);
  registerSubElements(u"ShareVal", u"ShareVals", XMLShareVal::create, false);
  registerSubElement(u"Constant", u"CashInjected", newElement<XMLConstant>, true);
}

XMLElement* XMLDayCap::create() {
  return pool().take();
}

void XMLDayCap::destroy() {
  pool().giveBack(*this);
}

ElementPool<XMLDayCap>& XMLDayCap::pool() {
  // Days that are left at the end of the program give their share values back, so that pool must outlive this
  // one.
  XMLShareVal::pool();
  static ElementPool<XMLDayCap> pool;
  return pool;
}

XMLShareVal::XMLShareVal() : XMLElement(layoutOf<XMLShareVal>(u"ShareVal")) {
  registerAndCreate(u"String", u"Code", newElement<XMLString>);
  markContentUnsafe(u"Code");
  registerAndCreate(u"Constant", u"Number", newElement<XMLConstant>);
  registerAndCreate(u"Constant", u"Price", newElement<XMLConstant>);
}

XMLElement* XMLShareVal::create() {
  return pool().take();
}

void XMLShareVal::destroy() {
  pool().giveBack(*this);
}

ElementPool<XMLShareVal>& XMLShareVal::pool() {
  static ElementPool<XMLShareVal> pool;
  return pool;
}

String capitalRecordFileName(const String& portfolioName) {
  return portfolioName + CAP_RECORD_FILE;
}

} // namespace Tallymoor
