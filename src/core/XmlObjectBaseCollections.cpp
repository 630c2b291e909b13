// The parts of CXmlObjectBase that need the collection base and the wildcard element: the
// collection event senders, the choice collection reader and reading from a CElement.
#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/core/XmlObjectBase.h"
#include "OvXmlLib6/metadata/Element.h"
#include "OvXmlLib6/metadata/XmlCollectionBase.h"

namespace OvXmlLib6 {

namespace {

void Fire(IEventSink* sink, CXmlCollectionBase* collection, IEventSink::MsgType type, void* data) {
  if (sink == nullptr) return;
  sink->OnEvent(collection != nullptr ? collection->GetBase() : nullptr, type, data);
}

}  // namespace

void CXmlObjectBase::FireOnCollectionChangeEvent(IEventSink* sink, CXmlCollectionBase* collection) {
  Fire(sink, collection, MsgType_CollectionChange, nullptr);
}

void CXmlObjectBase::FireOnCollectionAddEvent(IEventSink* sink, CXmlCollectionBase* collection,
                                              void* item) {
  Fire(sink, collection, MsgType_CollectionAdd, item);
}

void CXmlObjectBase::FireOnCollectionAddCompleteEvent(IEventSink* sink,
                                                      CXmlCollectionBase* collection, void* item) {
  Fire(sink, collection, MsgType_CollectionAddComplete, item);
}

void CXmlObjectBase::FireOnCollectionRemoveEvent(IEventSink* sink, CXmlCollectionBase* collection,
                                                 int index) {
  Fire(sink, collection, MsgType_CollectionRemove, &index);
}

void CXmlObjectBase::FireOnCollectionRemoveCompleteEvent(IEventSink* sink,
                                                         CXmlCollectionBase* collection,
                                                         int index) {
  Fire(sink, collection, MsgType_CollectionRemoveComplete, &index);
}

void CXmlObjectBase::Choice_Read_Collection(CXmlCollectionBase* collection, CXmlElement* parent,
                                            CXmlElement*& current, std::int32_t& count,
                                            const CXmlSerializationContext& context) {
  if (collection == nullptr)
    throw COvInvalidParamException("Choice_Read_Collection: the collection is NULL");
  const std::int32_t before = collection->GetCount();
  current = FromXml_Int(collection, parent, current, context);
  count = collection->GetCount() - before;
}

void CXmlObjectBase::FromXmlElement(const CElement* element,
                                    const CXmlSerializationContext& context) {
  if (element == nullptr) throw COvInvalidParamException("FromXmlElement: the element is NULL");
  // The element's own text, without declaration or added whitespace, read like any XML text.
  const std::string text =
      element->ToXml(false, false, EOLType_LF, CXmlSerializationContext::GetDefaultContext());
  FromXml(text.c_str(), context);
}

}  // namespace OvXmlLib6
