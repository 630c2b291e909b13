// CPooledObject: a base that gives a class the library's memory for small objects. The wildcard
// elements and attributes, their collections and the collections' list nodes derive from it:
// a document read into them makes hundreds of thousands of small objects that live and die
// together, and the general-purpose heap spends more time on them than the parse itself.
//
// Objects up to kMaxPooledObjectSize bytes are cut one after the other from 16 KiB blocks that
// each thread fills in turn; a block is free again when its last object is deleted, on whichever
// thread that happens. Blocks come from 1 MiB slabs that go back to the heap once all their
// blocks are free (the last four are kept). Objects made together therefore sit together in
// memory, and releasing a tree costs no per-object heap bookkeeping. The price: an object that
// outlives the others of its block keeps the whole block (at most 16 KiB) in use until it goes.
// Larger objects (a derived class, say) use the ordinary heap.
#ifndef OVXMLLIB6_CORE_POOLEDOBJECT_H
#define OVXMLLIB6_CORE_POOLEDOBJECT_H

#include "OvXmlLib6/core/Export.h"

#include <cstddef>

namespace OvXmlLib6 {

constexpr std::size_t kMaxPooledObjectSize = 512;

class OVXML_API CPooledObject {
 public:
  static void* operator new(std::size_t size);
  // Sized: a virtual destructor passes the size of the object's own class.
  static void operator delete(void* memory, std::size_t size) noexcept;
  // Placement forms, which the class-specific ones would otherwise hide. There is no
  // non-throwing form: its matching delete would not know the size the memory came with.
  static void* operator new(std::size_t, void* place) noexcept { return place; }
  static void operator delete(void*, void*) noexcept {}

 protected:
  CPooledObject() = default;
  ~CPooledObject() = default;
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_CORE_POOLEDOBJECT_H
