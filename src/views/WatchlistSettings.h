#pragma once
#include "foundation/String.h"
#include <vector>

namespace Tallymoor {

/// The user's own watchlists, which are kept in the settings: a section for each list, with a mark that it
/// exists and its codes as keys. Every change lasts at once. GUI thread only, under the big mutex.
namespace WatchlistSettings {

/// Names of all lists, sorted.
std::vector<String> names();
bool exists(const String& name);
/// An empty list, unless there is one of that name.
void add(const String& name);
/// The list with its codes; the limits of stocks stay.
void remove(const String& name);

/// The codes of a list, sorted.
std::vector<String> codes(const String& name);
/// A code that is there already is not there twice.
void addCode(const String& name, const String& code);
void removeCode(const String& name, const String& code);

/// What the user typed as a code, without blanks around it; empty for what can be no key of a list.
String cleanCode(const String& text);

} // namespace WatchlistSettings

} // namespace Tallymoor
