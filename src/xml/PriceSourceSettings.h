#pragma once
#include "xml/XMLElement.h"

namespace Tallymoor {

// What the user has chosen about sources of prices. Every text may hold any character.

/// Root of the user's "PriceSources.xml": any number of "Sources" in their order, then any number of "Pins".
class XMLPriceSources : public XMLElement {
public:
  XMLPriceSources();
};

/// Attributes "kind" ("locators", "document", "folder", "command"), "name", "on" and "tried" ("yes", "no"),
/// "folder" (a path; empty but for a folder); any number of "Words" of a command, then any number of
/// "Answers".
class XMLListedSource : public XMLElement {
public:
  XMLListedSource();
};

/// A word of a command.
class XMLCommandWord : public XMLElement {
public:
  XMLCommandWord();
};

/// The user's answer to what a CSV file leaves open. Attributes "file", a name, empty for all files; "about"
/// ("dates", "decimal", "timeZone", "close"); and "choice".
class XMLCsvAnswer : public XMLElement {
public:
  XMLCsvAnswer();
};

/// Attributes "code", "source" and "there", the code as that source knows it.
class XMLSourcePin : public XMLElement {
public:
  XMLSourcePin();
};

/// Root of the user's "PriceSourceKeys.xml": any number of "Keys".
class XMLSourceKeys : public XMLElement {
public:
  XMLSourceKeys();
};

/// Attributes "source" and "hosts", to which alone the key is sent, separated by blanks; its text is the key.
class XMLKeptKey : public XMLElement {
public:
  XMLKeptKey();
};

} // namespace Tallymoor
