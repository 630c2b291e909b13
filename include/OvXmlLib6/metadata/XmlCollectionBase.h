// CXmlCollectionBase: the root of every collection of a bound object. A collection is itself a
// reference-counted bound object that carries the name and namespace of its items' elements, the
// minimum and maximum number of items the schema allows (-1: unbounded) and the listeners that
// learn of each change.
//
// Listeners are not owned and must remove themselves before they die. A listener may add or
// remove listeners from inside OnEvent: a listener removed during an event is not called again,
// one added during an event is called from the next event on.
#ifndef OVXMLLIB6_METADATA_XMLCOLLECTIONBASE_H
#define OVXMLLIB6_METADATA_XMLCOLLECTIONBASE_H

#include "OvXmlLib6/core/Export.h"
#include "OvXmlLib6/core/XmlObjectBase.h"

#include <cstdint>
#include <string>
#include <vector>

namespace OvXmlLib6 {

class OVXML_API CXmlCollectionBase : public CXmlObjectBase {
 public:
  // No element name, no namespace, 0 to unbounded.
  CXmlCollectionBase();
  // Null strings are taken as empty ones.
  CXmlCollectionBase(const char* elementName, const char* ns, int minOccurs, int maxOccurs);
  CXmlCollectionBase(const CSharedString& elementName, const CSharedString& ns, int minOccurs,
                     int maxOccurs);
  // Copies names and limits; the copy starts without listeners, since listeners watch one
  // particular collection.
  CXmlCollectionBase(const CXmlCollectionBase& other);
  CXmlCollectionBase& operator=(const CXmlCollectionBase& other);

  CXmlObjectBase* GetBase() override { return this; }
  // The namespace of the items' elements.
  std::string GetNamespace() const override { return m_elementNamespace; }
  // The local name of the items' elements.
  const std::string& GetCollectionElementName() const { return m_elementName.str(); }

  int GetMinOccurs() const { return m_minOccurs; }
  int GetMaxOccurs() const { return m_maxOccurs; }

  // Appends the listener (a null one is ignored); the same listener may be added twice and is
  // then called twice.
  void AddEventListener(IEventSink* listener);
  // Removes every entry equal to the listener, keeping the order of the rest.
  void RemoveEventListener(IEventSink* listener);

  virtual int GetCount() const = 0;
  virtual void Clear() = 0;
  virtual void Remove(int index) = 0;
  // Throws COvValidationException when the count is above the maximum or below the minimum,
  // unless the context ignores collection counts. The maximum is tested first.
  virtual void ValidateCount(const CXmlSerializationContext& context) const;

 protected:
  ~CXmlCollectionBase() override;

  // A collection has no target namespace of its own: reaching this is a program logic error
  // and throws COvException.
  std::string GetTargetNamespace() const override;
  // A collection writes no attributes of its own.
  void AttributesToXml_Int(CXmlWriter* writer,
                           const CXmlSerializationContext& context) const override;

  // Each calls every listener, in the order in which it was added, with this collection as the
  // source. In every collection the add event's data is the item (object lists) or value (typed
  // collections) about to be added, and the add-complete event's data is the item or value as
  // the collection now holds it: a listener may keep that pointer only while the collection is
  // unchanged. The remove events' data points to the index: -1 for the object lists, the real
  // index for the typed collections.
  void FireOnCollectionChange();
  void FireOnCollectionAdd(void* item);
  void FireOnCollectionAddComplete(void* item);
  void FireOnCollectionRemove(int index);
  void FireOnCollectionRemoveComplete(int index);

  // Whether any listener would see an event.
  bool HasEventListeners() const { return m_listeners != nullptr; }

  // The message "Index %d is out of range, use 0 - %d" of a bad index into `count` items.
  static void ThrowIndexOutOfRange(int index, int count);

 private:
  template <typename Send>
  void FireToListeners(Send send);
  // Drops the listener block once it holds no listener and no event is being delivered.
  void DropEmptyListeners() noexcept;

  // The listeners and the events in progress. Most collections never have a listener, so the
  // block is made with the first one and goes with the last: an empty collection stays small.
  struct CListeners;

  CSharedString m_elementName;
  CSharedString m_elementNamespace;
  CListeners* m_listeners;
  std::int32_t m_minOccurs;
  std::int32_t m_maxOccurs;
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_METADATA_XMLCOLLECTIONBASE_H
