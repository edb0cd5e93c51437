#pragma once
#include "xml/SelfCheckedElement.h"

namespace Tallymoor {

// The three documents that hold all knowledge of where prices live on the web, and how their pages are read.
// A changed page needs a changed document, not a changed program. Each root names in "active" the domain of
// the locator in use. All classes but XMLURLPart check themselves while they are read, so that an incomplete
// document fails at load.

/// What a column of a table holds: attribute "type" of a tag locator. Documents depend on the names, not the
/// values.
enum ColumnType {
  COLUMN_TYPE_NONE = 0, ///< no type, or one that is not known
  COLUMN_TYPE_CODE = 1,
  COLUMN_TYPE_STOCK_NAME = 2,
  COLUMN_TYPE_MARKET_NAME = 3,
  COLUMN_TYPE_DATE = 4,
  COLUMN_TYPE_OPEN = 5,
  COLUMN_TYPE_HIGH = 6,
  COLUMN_TYPE_LOW = 7,
  COLUMN_TYPE_CLOSE = 8,
  COLUMN_TYPE_VOLUME = 9,
  COLUMN_TYPE_ADJ_CLOSE = 10
};

/// How the text of a tag is to be read: attribute "format" of a tag locator.
enum ValueFormat {
  VALUE_FORMAT_NONE = 0,
  VALUE_FORMAT_UTF8 = 1,
  VALUE_FORMAT_MID_DATE1 = 2, ///< "3-Mar-06"
  VALUE_FORMAT_LONG = 3,
  VALUE_FORMAT_FLOAT = 4,
  VALUE_FORMAT_COMMA_LONG = 5 ///< an integer with thousands commas
};

/// What a part of an address stands for: attribute "type" of a URL part.
enum URLVariableType {
  URL_VARIABLE_NONE = 0, ///< no type, or one that is not known: the part's text is meant literally
  URL_VARIABLE_CODE = 1,
  URL_VARIABLE_MARKET_CODE = 2,
  URL_VARIABLE_START_DAY = 3,
  URL_VARIABLE_START_MONTH = 4,
  URL_VARIABLE_START_YEAR = 5,
  URL_VARIABLE_END_DAY = 6,
  URL_VARIABLE_END_MONTH = 7,
  URL_VARIABLE_END_YEAR = 8,
  URL_VARIABLE_DMY = 9,
  URL_VARIABLE_COUNTRY = 10,
  URL_VARIABLE_INDEX_OR_SHARE = 11
};

/// Root of "CurrentPriceLocators.xml": "active", "version", any number of "CurrentPrices".
class XMLCurrentPriceLocators : public XMLSelfCheckedElement {
public:
  XMLCurrentPriceLocators();
};

/// Where one data source shows the price of a code: "domain", one "URLLocator", one "TagLocator".
class XMLCurrentPrice : public XMLSelfCheckedElement {
public:
  XMLCurrentPrice();
};

/// Root of "CodeSearchLocators.xml": "active", "version", any number of "CodeSearchs".
class XMLCodeSearchLocators : public XMLSelfCheckedElement {
public:
  XMLCodeSearchLocators();
};

/// How one data source is searched for codes: "domain", one or more "Details".
class XMLCodeSearch : public XMLSelfCheckedElement {
public:
  XMLCodeSearch();
};

/// One search page: one "URLLocator", one "TableLocator".
class XMLCodeSearchDetail : public XMLSelfCheckedElement {
public:
  XMLCodeSearchDetail();
};

/// Root of "HistoricalPricesLocators.xml": "active", "version", any number of "HistPrices".
class XMLHistoricalPricesLocators : public XMLSelfCheckedElement {
public:
  XMLHistoricalPricesLocators();
};

/// Where one data source shows past prices: "domain", "maxEntries", one "URLLocator", one "TableLocator".
class XMLHistoricalPrices : public XMLSelfCheckedElement {
public:
  XMLHistoricalPrices();
  const String& domain() const;
  /// Rows that one page of the source holds at most.
  std::int32_t maxEntries() const;
};

/// An address in pieces: one or more "URLParts".
class XMLURLLocator : public XMLSelfCheckedElement {
public:
  XMLURLLocator();
};

/// A literal piece of an address, or with a known "type" a variable.
class XMLURLPart : public XMLElement {
public:
  XMLURLPart();
  URLVariableType type() const;
  /// URL_VARIABLE_NONE takes the attribute away.
  void setType(URLVariableType type);
};

/// How a table is read: in this order one "TableRoot", one "Row", one or more "Columns", all of them tag
/// locators.
class XMLTableLocator : public XMLSelfCheckedElement {
public:
  XMLTableLocator();
};

/// A walk over a page: one or more "TagFinds". On a column it bears "type" and "format", and perhaps in
/// "heading" the text that stands over the column.
class XMLTagLocator : public XMLSelfCheckedElement {
public:
  XMLTagLocator();
  ColumnType type() const;
  void setType(ColumnType type);
  ValueFormat format() const;
  void setFormat(ValueFormat format);
};

/// One step of a walk: exactly one of "TagSearch" and "TagMove", which is checked at the end of the element.
class XMLTagFind : public XMLSelfCheckedElement {
public:
  XMLTagFind();

protected:
  /// Throws XMLException "XMLTagFind::endElement - both are present" or "... - neither are present".
  void endTagRead() override;
};

/// A step by position: "move" ("In" to the sub tags, anything else along the siblings), "name", optional
/// "index".
class XMLTagMove : public XMLSelfCheckedElement {
public:
  XMLTagMove();
  bool movesIn() const;
  /// Counts the tags of that name only, from 0.
  std::size_t index() const;
};

/// A step by content: "tagname", and either "val" or "attr" with an optional "attrVal".
class XMLTagSearch : public XMLSelfCheckedElement {
public:
  XMLTagSearch();
};

} // namespace Tallymoor
