#pragma once
#include "xml/SelfCheckedElement.h"

namespace Tallymoor {

// A source of prices as one document that users can write, mend and pass on: for which codes it serves, at
// what addresses it is asked, and how its answers are read. docs/prices.md explains each part to users.

/// Root "PriceSource": attribute "name"; perhaps "notTried", the day on which the document was written from
/// the published format alone; one or more "Serves", at most one each of "Terms", "Limits", "Key", "TryCode",
/// "Current", "History", "Search", in this order.
class XMLPriceSource : public XMLSelfCheckedElement {
public:
  XMLPriceSource();
};

/// Attribute "codes": a pattern such as "*.AX"; perhaps "currency".
class XMLServedCodes : public XMLSelfCheckedElement {
public:
  XMLServedCodes();
};

/// The terms of use in a line; perhaps an attribute "link".
class XMLSourceTerms : public XMLElement {
public:
  XMLSourceTerms();
};

/// Perhaps "atOnce", "perMinute", "perDay": requests that the source allows.
class XMLSourceLimits : public XMLElement {
public:
  XMLSourceLimits();
};

/// Where the user gets a key, in a line; perhaps an attribute "link". The key itself is kept elsewhere.
class XMLSourceKey : public XMLElement {
public:
  XMLSourceKey();
};

/// A code that the source is known to have.
class XMLTryCode : public XMLElement {
public:
  XMLTryCode();
};

/// One kind of request: attribute "reader" ("json", "csv", "table"), and perhaps those that say how texts are
/// read: "separator", "skipLines", "headings", "dates", "dateLocale", "timeZone", "decimal", "factor",
/// "invert", "currency", "daysAPage". One "Address", any number of "Headers", one or more "Columns", any
/// number of "Errors".
class XMLSourceRequest : public XMLSelfCheckedElement {
protected:
  explicit XMLSourceRequest(const String& name);
};

/// For a current price: element "Current".
class XMLCurrentRequest : public XMLSourceRequest {
public:
  XMLCurrentRequest();
};

/// For past prices: element "History".
class XMLHistoryRequest : public XMLSourceRequest {
public:
  XMLHistoryRequest();
};

/// For codes by a name: element "Search".
class XMLSearchRequest : public XMLSourceRequest {
public:
  XMLSearchRequest();
};

/// Text with variables in braces.
class XMLSourceAddress : public XMLElement {
public:
  XMLSourceAddress();
};

/// Attribute "name"; its text is the value.
class XMLRequestHeader : public XMLSelfCheckedElement {
public:
  XMLRequestHeader();
};

/// Attributes "type" and "at": a JSON path, a heading, or a number from 1.
class XMLAnswerColumn : public XMLSelfCheckedElement {
public:
  XMLAnswerColumn();
};

/// Attribute "at": where the source tells an error; perhaps "means": "wrong code", or "refusal", which is
/// meant without it.
class XMLAnswerError : public XMLSelfCheckedElement {
public:
  XMLAnswerError();
};

} // namespace Tallymoor
