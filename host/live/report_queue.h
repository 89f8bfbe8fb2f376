// A bounded lock-free queue from any number of threads to one reader (a sequence number per
// slot): a push never waits or allocates, and fails when the queue is full.
#pragma once

#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>

template <typename T>
class ReportQueue {
 public:
  explicit ReportQueue(std::size_t minimumCapacity)
      : capacity_(std::bit_ceil(minimumCapacity < 2 ? std::size_t{2} : minimumCapacity)),
        slots_(std::make_unique<Slot[]>(capacity_)) {
    for (std::size_t i = 0; i < capacity_; ++i) slots_[i].sequence.store(i);
  }

  // [any thread] False when full.
  bool push(const T& item) {
    std::size_t position = head_.load(std::memory_order_relaxed);
    for (;;) {
      Slot& slot = slots_[position & (capacity_ - 1)];
      const std::size_t sequence = slot.sequence.load(std::memory_order_acquire);
      const auto lag = static_cast<std::intptr_t>(sequence) - static_cast<std::intptr_t>(position);
      if (lag == 0) {
        if (head_.compare_exchange_weak(position, position + 1, std::memory_order_relaxed)) {
          slot.item = item;
          slot.sequence.store(position + 1, std::memory_order_release);
          return true;
        }
      } else if (lag < 0) {
        return false;
      } else {
        position = head_.load(std::memory_order_relaxed);
      }
    }
  }

  // [the reader] False when empty.
  bool pop(T& item) {
    Slot& slot = slots_[tail_ & (capacity_ - 1)];
    if (slot.sequence.load(std::memory_order_acquire) != tail_ + 1) return false;
    item = slot.item;
    slot.sequence.store(tail_ + capacity_, std::memory_order_release);
    ++tail_;
    return true;
  }

 private:
  struct Slot {
    std::atomic<std::size_t> sequence{0};
    T item{};
  };
  std::size_t capacity_;
  std::unique_ptr<Slot[]> slots_;
  alignas(64) std::atomic<std::size_t> head_{0};
  alignas(64) std::size_t tail_ = 0;
};
