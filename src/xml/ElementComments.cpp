#include "xml/ElementComments.h"
#include <mutex>
#include <unordered_map>
#include <utility>

namespace Tallymoor {

namespace {

struct Store {
  std::mutex mutex;
  std::unordered_map<const XMLElement*, ElementComments> comments;
};

/// Never destroyed: pooled elements end after everything else.
Store& store() {
  static Store* const all = new Store;
  return *all;
}

} // namespace

ElementComments ElementComments::of(const XMLElement& element) {
  const std::lock_guard lock(store().mutex);
  const auto found = store().comments.find(&element);
  return found == store().comments.end() ? ElementComments() : found->second;
}

void ElementComments::set(const XMLElement& element, ElementComments comments) {
  const std::lock_guard lock(store().mutex);
  store().comments[&element] = std::move(comments);
}

void ElementComments::remove(const XMLElement& element) {
  const std::lock_guard lock(store().mutex);
  store().comments.erase(&element);
}

} // namespace Tallymoor
