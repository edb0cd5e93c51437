#pragma once
#include "books/SharePortfolioUser.h"
#include "foundation/String.h"
#include <map>
#include <memory>
#include <vector>

namespace Tallymoor {

class XMLElement;
class XMLPortfolios;

/// All open portfolios by name. PortfolioStore owns the map; the root node of the tree adds to it, renames
/// and deletes, by the operations below.
using OpenPortfolios = std::map<String, std::unique_ptr<SharePortfolioUser>>;

/// All of them by name, except the one given.
std::vector<SharePortfolioUser*> listOf(const OpenPortfolios& open, const String& except = String());

/// Gives an open portfolio another name, which no other one has.
void renamePortfolio(OpenPortfolios& open, const String& oldName, const String& newName);

/// Closes an open portfolio for good: its records go as well, but not the file of its capital record.
void removePortfolio(OpenPortfolios& open, XMLPortfolios& records, const String& name);

/// Takes the records of a portfolio that came from elsewhere into the document, and opens it. No open one has
/// its name. The days of a capital record that lies on disk under that name are those of other records, so
/// they are dropped.
void addPortfolio(OpenPortfolios& open, XMLPortfolios& records, std::unique_ptr<XMLElement> portfolio);

} // namespace Tallymoor
