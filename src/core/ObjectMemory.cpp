#include "core/ObjectMemory.h"

#include "OvXmlLib6/core/PooledObject.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <new>

// Under AddressSanitizer every object gets its own heap block, so that overruns and uses after
// free are caught object by object rather than hidden inside a shared block.
#if defined(__SANITIZE_ADDRESS__)
#define OVXML_POOL_PASS_THROUGH 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define OVXML_POOL_PASS_THROUGH 1
#endif
#endif

namespace OvXmlLib6 {
namespace detail {

#ifndef OVXML_POOL_PASS_THROUGH
namespace {

constexpr std::size_t kBlockSize = 16 * 1024;
constexpr std::size_t kBlocksPerSlab = 64;
constexpr std::size_t kSpareSlabs = 4;
// The strictest alignment an object handed out may need.
constexpr std::size_t kGrain = alignof(std::max_align_t);

struct Slab;

// Each block starts with the count of its live objects. While a thread still cuts objects from
// the block, the count carries a large bias and the objects cut so far are not yet added, so
// that deletions on any thread can never bring it to zero early; when the thread moves on it
// adds what it cut and removes the bias in one step. Whoever brings the count to zero gives the
// block back to its slab.
struct alignas(kGrain) BlockHeader {
  std::atomic<std::int64_t> live;
  Slab* slab;
};
constexpr std::int64_t kBias = std::int64_t{1} << 40;

// Blocks come from slabs of 64 (1 MiB), taken from the heap in one aligned piece. One aligned
// request per block would leave the heap strewn with block-sized holes between other
// allocations, which later aligned requests cannot use: a long-running process would see its
// heap grow and every request get slower. A free block goes back to its slab and is handed out
// again first; a slab whose blocks are all free goes back to the heap, except the last few
// (kSpareSlabs, 4 MiB in all), kept for the next requests. Slabs change hands only once per block,
// so one lock serves every thread.
struct Slab {
  Slab* previous;  // in the list of slabs with free blocks
  Slab* next;
  char* memory;
  void* freeBlocks;  // each free block holds the address of the next
  std::size_t freeCount;
};

struct SlabList {
  std::mutex lock;
  Slab* withFree = nullptr;  // slabs with at least one free block, the newest first
  Slab* spares = nullptr;    // slabs with every block free, kept for the next requests
  std::size_t spareCount = 0;
};

SlabList& Slabs() {
  // Never destroyed: blocks may be given back by destructors that run at the very end.
  static SlabList* const slabs = new SlabList();
  return *slabs;
}

void Unlink(SlabList& slabs, Slab* slab) noexcept {
  if (slab->previous != nullptr) {
    slab->previous->next = slab->next;
  } else {
    slabs.withFree = slab->next;
  }
  if (slab->next != nullptr) slab->next->previous = slab->previous;
  slab->previous = slab->next = nullptr;
}

void LinkFirst(SlabList& slabs, Slab* slab) noexcept {
  slab->previous = nullptr;
  slab->next = slabs.withFree;
  if (slabs.withFree != nullptr) slabs.withFree->previous = slab;
  slabs.withFree = slab;
}

void FreeSlab(Slab* slab) noexcept {
  std::free(slab->memory);
  delete slab;
}

BlockHeader* TakeBlock() {
  SlabList& slabs = Slabs();
  std::lock_guard<std::mutex> hold(slabs.lock);
  Slab* slab = slabs.withFree;
  if (slab == nullptr) {
    slab = slabs.spares;
    if (slab != nullptr) {
      slabs.spares = slab->next;
      --slabs.spareCount;
    } else {
      std::unique_ptr<Slab> made(new Slab{nullptr, nullptr, nullptr, nullptr, 0});
      made->memory =
          static_cast<char*>(std::aligned_alloc(kBlockSize, kBlockSize * kBlocksPerSlab));
      if (made->memory == nullptr) throw std::bad_alloc();
      for (std::size_t i = kBlocksPerSlab; i-- > 0;) {
        void* block = made->memory + i * kBlockSize;
        *static_cast<void**>(block) = made->freeBlocks;
        made->freeBlocks = block;
      }
      made->freeCount = kBlocksPerSlab;
      slab = made.release();
    }
    LinkFirst(slabs, slab);
  }
  void* memory = slab->freeBlocks;
  slab->freeBlocks = *static_cast<void**>(memory);
  if (--slab->freeCount == 0) Unlink(slabs, slab);
  return new (memory) BlockHeader{{kBias}, slab};
}

void FreeBlock(BlockHeader* block) noexcept {
  Slab* slab = block->slab;
  block->~BlockHeader();
  SlabList& slabs = Slabs();
  Slab* released = nullptr;
  {
    std::lock_guard<std::mutex> hold(slabs.lock);
    *reinterpret_cast<void**>(block) = slab->freeBlocks;
    slab->freeBlocks = block;
    if (++slab->freeCount == 1) LinkFirst(slabs, slab);
    if (slab->freeCount == kBlocksPerSlab) {
      Unlink(slabs, slab);
      if (slabs.spareCount < kSpareSlabs) {
        slab->next = slabs.spares;
        slabs.spares = slab;
        ++slabs.spareCount;
      } else {
        released = slab;
      }
    }
  }
  if (released != nullptr) FreeSlab(released);
}

// The block a thread is filling. Plain data, so that it stays usable while the thread's other
// thread-local objects are destroyed.
struct Filling {
  BlockHeader* block;
  char* next;
  char* end;
  std::int64_t cut;
  bool exiting;
};
thread_local Filling t_filling{nullptr, nullptr, nullptr, 0, false};

void Retire(Filling& filling) noexcept {
  BlockHeader* block = filling.block;
  if (block == nullptr) return;
  const std::int64_t change = filling.cut - kBias;
  filling.block = nullptr;
  filling.next = filling.end = nullptr;
  filling.cut = 0;
  if (block->live.fetch_add(change, std::memory_order_acq_rel) + change == 0) FreeBlock(block);
}

// Deletions on one thread come in runs from the same block (objects made together die
// together), so a thread counts its deletions per block and takes them off the block's count in
// one step when it meets another block. The block cannot go meanwhile: the count still includes
// the objects counted here.
struct Freeing {
  BlockHeader* block;
  std::int64_t count;
};
thread_local Freeing t_freeing{nullptr, 0};

void Settle(Freeing& freeing) noexcept {
  BlockHeader* block = freeing.block;
  if (block == nullptr) return;
  const std::int64_t count = freeing.count;
  freeing.block = nullptr;
  freeing.count = 0;
  if (block->live.fetch_sub(count, std::memory_order_acq_rel) == count) FreeBlock(block);
}

// Hands the block back when the thread ends; later allocations on the thread (from destructors
// of other thread-local objects) each retire their block at once, and later deletions settle at
// once.
struct ThreadExit {
  bool armed = false;
  ~ThreadExit() {
    t_filling.exiting = true;
    Settle(t_freeing);
    Retire(t_filling);
  }
};
thread_local ThreadExit t_exit;

void StartBlock(Filling& filling) {
  Retire(filling);
  BlockHeader* block = TakeBlock();
  filling.block = block;
  filling.next = reinterpret_cast<char*>(block) + sizeof(BlockHeader);
  filling.end = reinterpret_cast<char*>(block) + kBlockSize;
  if (!filling.exiting) t_exit.armed = true;  // registers the thread-exit hand-back
}

}  // namespace
#endif

void* AllocateSmall(std::size_t size) {
#ifdef OVXML_POOL_PASS_THROUGH
  return ::operator new(size);
#else
  if (size > kMaxPooledObjectSize) return ::operator new(size);
  // Sizes go up to a multiple of 8. A type that needs 16-byte alignment has a size that is a
  // multiple of 16, so such sizes start on a 16-byte boundary; nothing else needs more than 8.
  const std::size_t rounded = (size + 7) & ~std::size_t{7};
  Filling& filling = t_filling;
  char* start = filling.next;
  if (start != nullptr && rounded % kGrain == 0) {
    start += (kGrain - reinterpret_cast<std::uintptr_t>(start) % kGrain) % kGrain;
  }
  if (start == nullptr || start > filling.end ||
      static_cast<std::size_t>(filling.end - start) < rounded) {
    StartBlock(filling);  // a block's first object starts on a 16-byte boundary
    start = filling.next;
  }
  void* memory = start;
  filling.next = start + rounded;
  ++filling.cut;
  if (filling.exiting) Retire(filling);
  return memory;
#endif
}

void FreeSmall(void* memory, std::size_t size) noexcept {
#ifdef OVXML_POOL_PASS_THROUGH
  (void)size;
  ::operator delete(memory);
#else
  if (memory == nullptr) return;
  if (size > kMaxPooledObjectSize) {
    ::operator delete(memory);
    return;
  }
  auto* block = reinterpret_cast<BlockHeader*>(reinterpret_cast<std::uintptr_t>(memory) &
                                               ~std::uintptr_t{kBlockSize - 1});
  Freeing& freeing = t_freeing;
  if (freeing.block != block) {
    Settle(freeing);
    freeing.block = block;
    if (t_filling.exiting) {
      freeing.count = 1;
      Settle(freeing);
      return;
    }
    t_exit.armed = true;  // registers the thread-exit settling
  }
  ++freeing.count;
#endif
}

}  // namespace detail

void* CPooledObject::operator new(std::size_t size) { return detail::AllocateSmall(size); }

void CPooledObject::operator delete(void* memory, std::size_t size) noexcept {
  detail::FreeSmall(memory, size);
}

}  // namespace OvXmlLib6
