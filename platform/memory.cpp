#include "platform/memory.h"

#include <cstdint>
#include <new>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace lumatrex {

#if defined(__linux__)

void* AllocateLargePages(std::size_t bytes) {
  // Mapped with a large page to spare, then trimmed to an aligned block:
  // only an aligned range can be backed by large pages.
  const std::size_t mapped = bytes + kLargePageBytes;
  void* raw = mmap(nullptr, mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (raw == MAP_FAILED) throw std::bad_alloc();
  const auto start = reinterpret_cast<std::uintptr_t>(raw);
  const std::uintptr_t aligned = (start + kLargePageBytes - 1) & ~(kLargePageBytes - 1);
  if (aligned > start) munmap(raw, aligned - start);
  if (const std::uintptr_t end = start + mapped, used = aligned + bytes; end > used)
    munmap(reinterpret_cast<void*>(used), end - used);
  auto* block = reinterpret_cast<void*>(aligned);
  // Advice only: without large pages the block is still good memory.
  madvise(block, bytes, MADV_HUGEPAGE);
  return block;
}

#else

void* AllocateLargePages(std::size_t bytes) { return ::operator new(bytes, std::align_val_t{kLargePageBytes}); }

#endif

}  // namespace lumatrex
