// A growable array of trivially copyable records in one block of memory. It grows with realloc,
// which moves a large block by remapping its pages instead of copying them; places it adds are
// left as they are (the caller writes them); a copy is one memcpy. The document keeps its
// entries in these, so that neither growing nor snapshotting walks them one by one.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <type_traits>
#include <utility>

namespace scribo::engine {

template <class T> class PodBuffer {
  static_assert(std::is_trivially_copyable_v<T>);

public:
  PodBuffer() = default;
  PodBuffer(const PodBuffer& other) {
    if (other.size_ == 0)
      return;
    Reserve(other.size_);
    std::memcpy(static_cast<void*>(data_), other.data_, other.size_ * sizeof(T));
    size_ = other.size_;
  }
  PodBuffer(PodBuffer&& other) noexcept
      : data_(std::exchange(other.data_, nullptr)), size_(std::exchange(other.size_, 0)),
        capacity_(std::exchange(other.capacity_, 0)) {}
  PodBuffer& operator=(PodBuffer other) noexcept {
    std::swap(data_, other.data_);
    std::swap(size_, other.size_);
    std::swap(capacity_, other.capacity_);
    return *this;
  }
  ~PodBuffer() { std::free(data_); }

  T* data() { return data_; }
  const T* data() const { return data_; }
  size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  T* begin() { return data_; }
  T* end() { return data_ + size_; }
  const T* begin() const { return data_; }
  const T* end() const { return data_ + size_; }
  T& operator[](size_t i) { return data_[i]; }
  const T& operator[](size_t i) const { return data_[i]; }

  // New places are not initialised.
  void resize(size_t size) {
    if (size > capacity_)
      Reserve(std::max(size, capacity_ * 2));
    size_ = size;
  }
  void push_back(const T& value) {
    T copy = value; // `value` may lie in the buffer, which may move
    resize(size_ + 1);
    data_[size_ - 1] = copy;
  }
  void clear() { size_ = 0; } // the memory stays

private:
  void Reserve(size_t capacity) {
    capacity = std::max<size_t>(capacity, 16);
    void* grown = std::realloc(data_, capacity * sizeof(T));
    if (!grown)
      throw std::bad_alloc();
    data_ = static_cast<T*>(grown);
    capacity_ = capacity;
  }

  T* data_ = nullptr;
  size_t size_ = 0;
  size_t capacity_ = 0;
};

} // namespace scribo::engine
