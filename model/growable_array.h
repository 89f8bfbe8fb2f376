// A growable array of plain records on malloc: no exceptions, contents kept when growing fails,
// growth by at least half the length (page granularity once past 4096 bytes), memory given back
// when shrunk well below capacity. New elements are zero bytes.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <type_traits>

template <typename T>
class GrowableArray {
  static_assert(std::is_trivially_copyable_v<T>, "records are copied as bytes");

 public:
  GrowableArray() = default;
  ~GrowableArray() { std::free(data_); }
  GrowableArray(const GrowableArray&) = delete;
  GrowableArray& operator=(const GrowableArray&) = delete;

  int size() const { return count_; }
  bool empty() const { return count_ == 0; }
  T* data() { return data_; }
  const T* data() const { return data_; }
  T& operator[](int i) { return data_[i]; }
  const T& operator[](int i) const { return data_[i]; }
  T* begin() { return data_; }
  T* end() { return data_ + count_; }
  const T* begin() const { return data_; }
  const T* end() const { return data_ + count_; }
  std::size_t capacityBytes() const { return capacityBytes_; }

  // Returns false, keeping the old contents and size, when memory cannot be had.
  bool resize(int count) {
    if (count < 0) return false;
    const std::size_t neededBytes = static_cast<std::size_t>(count) * sizeof(T);
    if (neededBytes > capacityBytes_ || shouldShrink(neededBytes)) {
      if (!reallocate(neededBytes)) return false;
    }
    if (count > count_) {
      std::memset(static_cast<void*>(data_ + count_), 0,
                  static_cast<std::size_t>(count - count_) * sizeof(T));
    }
    count_ = count;
    return true;
  }

  // Empties the array but keeps its memory, for buffers that are filled again and again.
  void clear() { count_ = 0; }

  void clearToZero() {
    if (count_ > 0)
      std::memset(static_cast<void*>(data_), 0, static_cast<std::size_t>(count_) * sizeof(T));
  }

  void release() {
    std::free(data_);
    data_ = nullptr;
    count_ = 0;
    capacityBytes_ = 0;
  }

 private:
  static constexpr std::size_t kGranularity = 4096;

  // Only an array that gets shorter gives memory back, so that one emptied by clear() and filled
  // again piece by piece keeps its memory.
  bool shouldShrink(std::size_t neededBytes) const {
    const std::size_t lengthBytes = static_cast<std::size_t>(count_) * sizeof(T);
    return capacityBytes_ > kGranularity && neededBytes < lengthBytes &&
           neededBytes < capacityBytes_ / 4;
  }

  std::size_t grownCapacity(std::size_t neededBytes) const {
    const std::size_t lengthBytes = static_cast<std::size_t>(count_) * sizeof(T);
    std::size_t bytes = neededBytes;
    if (neededBytes > capacityBytes_ && bytes < lengthBytes + lengthBytes / 2) {
      bytes = lengthBytes + lengthBytes / 2;
    }
    if (bytes > kGranularity) bytes = (bytes + kGranularity - 1) / kGranularity * kGranularity;
    return bytes;
  }

  bool reallocate(std::size_t neededBytes) {
    const std::size_t bytes = grownCapacity(neededBytes);
    if (bytes == 0) {
      std::free(data_);
      data_ = nullptr;
      capacityBytes_ = 0;
      return true;
    }
    void* grown = std::realloc(static_cast<void*>(data_), bytes);
    if (grown == nullptr) return neededBytes <= capacityBytes_;
    data_ = static_cast<T*>(grown);
    capacityBytes_ = bytes;
    return true;
  }

  T* data_ = nullptr;
  int count_ = 0;
  std::size_t capacityBytes_ = 0;
};
