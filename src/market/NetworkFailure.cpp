#include "market/NetworkFailure.h"

namespace Tallymoor {

namespace {

constexpr unsigned NOT_FOUND = 404;
constexpr unsigned GONE = 410;

} // namespace

bool isNotFound(const HTTPException& failure) {
  return failure.code() == NOT_FOUND || failure.code() == GONE;
}

bool isFailureOfNetwork(const std::exception_ptr& failure) {
  if (!failure)
    return false;
  try {
    std::rethrow_exception(failure);
  } catch (const HTTPException& exception) {
    return !isNotFound(exception);
  } catch (...) {
    return false;
  }
}

} // namespace Tallymoor
