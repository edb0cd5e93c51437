#include "market/FetchQueue.h"
#include "foundation/EndingSignals.h"
#include <algorithm>
#include <exception>
#include <utility>

namespace Tallymoor {

FetchQueue::FetchQueue(std::size_t atOnce) : m_atOnce(atOnce) {}

FetchQueue::~FetchQueue() {
  stop();
}

void FetchQueue::add(Fetch fetch) {
  const MutexLock lock(m_mutex);
  if (m_stop.stop_requested())
    return;
  auto item = std::make_shared<Item>();
  item->fetch = std::move(fetch);
  m_items.push_back(std::move(item));
  if (m_workers.size() < std::min(m_atOnce, m_items.size())) {
    const EndingSignalsBlocked blocked;
    m_workers.emplace_back([this, stop = m_stop.get_token()] { work(stop); });
  }
  m_changed.notify_all();
}

bool FetchQueue::isEmpty() const {
  const MutexLock lock(m_mutex);
  return m_items.empty();
}

bool FetchQueue::applyNext(std::chrono::milliseconds patience) {
  std::shared_ptr<Item> item;
  {
    MutexLock lock(m_mutex);
    const auto isThere = [this]() REQUIRES(m_mutex) {
      return m_interrupted || m_items.empty() || m_items.front()->state == State::Done;
    };
    const bool isOver = m_changed.wait_for(lock, patience, isThere);
    m_interrupted = false;
    if (!isOver || m_items.empty() || m_items.front()->state != State::Done)
      return false;
    item = std::move(m_items.front());
    m_items.pop_front();
  }
  item->apply();
  return true;
}

void FetchQueue::interruptWait() {
  const MutexLock lock(m_mutex);
  m_interrupted = true;
  m_changed.notify_all();
}

void FetchQueue::stop() {
  const MutexLock lock(m_mutex);
  m_stop.request_stop();
  std::erase_if(m_items, [](const auto& item) { return item->state == State::Waiting; });
  m_changed.notify_all();
}

std::shared_ptr<FetchQueue::Item> FetchQueue::nextToBegin() const {
  const auto waiting = std::find_if(m_items.begin(), m_items.end(),
                                    [](const auto& item) { return item->state == State::Waiting; });
  return waiting == m_items.end() ? nullptr : *waiting;
}

void FetchQueue::work(const std::stop_token& stop) {
  MutexLock lock(m_mutex);
  for (;;) {
    std::shared_ptr<Item> item;
    m_changed.wait(lock, stop, [&]() REQUIRES(m_mutex) { return (item = nextToBegin()) != nullptr; });
    if (!item)
      return;
    item->state = State::UnderWay;
    lock.unlock();
    Apply apply;
    try {
      apply = item->fetch(stop);
    } catch (...) {
      apply = [failure = std::current_exception()] { std::rethrow_exception(failure); };
    }
    lock.lock();
    item->apply = std::move(apply);
    item->state = State::Done;
    m_changed.notify_all();
  }
}

} // namespace Tallymoor
