// A lock-free ring of samples between one writing and one reading thread: neither ever waits or
// allocates. [writer thread] write, writable; [reader thread] read, readable.
#pragma once

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstddef>
#include <vector>

template <typename T>
class SpscRing {
 public:
  // Holds at least `minimumCapacity` items (rounded up to a power of two).
  explicit SpscRing(std::size_t minimumCapacity)
      : storage_(std::bit_ceil(minimumCapacity < 2 ? std::size_t{2} : minimumCapacity)),
        mask_(storage_.size() - 1) {}

  std::size_t capacity() const { return storage_.size(); }
  std::size_t readable() const {
    return head_.load(std::memory_order_acquire) - tail_.load(std::memory_order_relaxed);
  }
  std::size_t writable() const {
    return capacity() -
           (head_.load(std::memory_order_relaxed) - tail_.load(std::memory_order_acquire));
  }

  // Writes as many of `count` items as fit; returns how many.
  std::size_t write(const T* items, std::size_t count) {
    const std::size_t head = head_.load(std::memory_order_relaxed);
    const std::size_t n = std::min(count, writable());
    for (std::size_t i = 0; i < n; ++i) storage_[(head + i) & mask_] = items[i];
    head_.store(head + n, std::memory_order_release);
    return n;
  }

  // Drops up to `count` items unread; returns how many.
  std::size_t discard(std::size_t count) {
    const std::size_t n = std::min(count, readable());
    tail_.store(tail_.load(std::memory_order_relaxed) + n, std::memory_order_release);
    return n;
  }

  // Reads up to `count` items; returns how many.
  std::size_t read(T* items, std::size_t count) {
    const std::size_t tail = tail_.load(std::memory_order_relaxed);
    const std::size_t n = std::min(count, readable());
    for (std::size_t i = 0; i < n; ++i) items[i] = storage_[(tail + i) & mask_];
    tail_.store(tail + n, std::memory_order_release);
    return n;
  }

 private:
  std::vector<T> storage_;
  std::size_t mask_;
  alignas(64) std::atomic<std::size_t> head_{0};  // items written, ever
  alignas(64) std::atomic<std::size_t> tail_{0};  // items read, ever
};
