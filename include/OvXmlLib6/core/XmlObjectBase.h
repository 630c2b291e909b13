// CXmlObjectBase: the root of every bound object (generated schema classes, wildcard elements and
// attributes, collections). It carries the intrusive reference count, the element name under which
// the object is written, the public entry points that turn an object into XML text, bytes or a
// file and back, and the protected helpers that generated property setters call.
//
//   CSmartPtr<COrder> order = new COrder();     // count 0 -> 1
//   order->FromXmlFile("order.xml");            // reads into the existing object
//   std::string text = order->ToXml();          // declaration, formatted, LF line ends
//
// Lifetime: a new object starts at count 0 and deletes itself when Release brings the count back
// to 0, so objects are held by CSmartPtr and never deleted directly. Parents hold their children
// through CSmartPtr members, so releasing the root releases the whole tree. Reference counting
// cannot free cycles: if an application makes an object (directly or through descendants) hold a
// reference to itself or to an ancestor, every object on that cycle, and everything they hold,
// stays alive until the process ends. Break such cycles by clearing the member before letting go.
//
// Depth: reading and writing recurse once per nested bound object. Every nested call made through
// the static ToXml_Int/FromXml_Int helpers (and every entry point) counts one level on the calling
// thread; past GetMaxNestingDepth() levels the read or write fails with a COvException instead of
// overflowing the stack. Code that recurses into children by other means takes a CNestingGuard.
#ifndef OVXMLLIB6_CORE_XMLOBJECTBASE_H
#define OVXMLLIB6_CORE_XMLOBJECTBASE_H

#include "OvXmlLib6/core/Enums.h"
#include "OvXmlLib6/core/Export.h"
#include "OvXmlLib6/core/SerializationContext.h"
#include "OvXmlLib6/core/SharedString.h"
#include "OvXmlLib6/types/BinaryData.h"

#include <atomic>
#include <cstdint>
#include <string>
#include <utility>

namespace OvXmlLib6Data {
class CAttributeInfo;
class CElementInfo;
}  // namespace OvXmlLib6Data

namespace OvXmlLib6 {

class CXmlObjectBase;
class CXmlCollectionBase;
class CXmlElement;
class CXmlWriter;
class CTextStream;
class CBinaryStream;
class CXmlDocument;
class CElement;
namespace detail {
class CObjectReader;
class CFirstReference;
class CRootOptions;
}  // namespace detail

// When on, ToXmlFile without compression writes through a file text stream while the document is
// being produced, instead of building it in memory first. Off by default. A plain global: set it
// before threads start.
OVXML_API void AsyncToXmlFile(bool on);
OVXML_API bool IsAsyncToXmlFile();

// The deepest nesting of bound objects that one read or write on a thread may reach. The default,
// kDefaultMaxNestingDepth, is far beyond any schema and still well inside an 8 MiB stack. A
// process-wide setting like the other switches: set it before threads start. 0 is taken as 1.
constexpr std::uint32_t kDefaultMaxNestingDepth = 2000;
OVXML_API void SetMaxNestingDepth(std::uint32_t depth);
OVXML_API std::uint32_t GetMaxNestingDepth();

// Receives the notifications of collections (and whatever else an object wants to observe).
class OVXML_API IEventSink {
 public:
  enum MsgType : std::int32_t {
    MsgType_CollectionChange = 0,       // data: null
    MsgType_CollectionAdd = 1,          // about to add; data: the item or value being added
    MsgType_CollectionAddComplete = 2,  // added; data: the item or value as the collection holds it
    MsgType_CollectionRemove = 3,       // an item is about to be removed; data: int* index
    MsgType_CollectionRemoveComplete = 4,  // an item was removed; data: int* index
  };
  virtual void OnEvent(CXmlObjectBase* source, MsgType type, void* data) = 0;

 protected:
  // Sinks are never deleted through this interface.
  ~IEventSink() = default;
};

class OVXML_API CXmlObjectBase : public IEventSink {
 public:
  // Counts one level of nesting on the calling thread for as long as it lives; the constructor
  // throws COvException "Element nesting is deeper than %u levels at element [%s]" when the
  // thread would go past GetMaxNestingDepth(). `elementName` may be null.
  class OVXML_API CNestingGuard {
   public:
    explicit CNestingGuard(const char* elementName);
    ~CNestingGuard();
    CNestingGuard(const CNestingGuard&) = delete;
    CNestingGuard& operator=(const CNestingGuard&) = delete;
  };

  CXmlObjectBase();
  // Copies the element name. The new object starts with a count of 0 like every new object, and
  // assignment keeps the target's own count: a copied count would make a copy held by a CSmartPtr
  // leak, and an assigned one would let a held object be deleted while still referenced.
  CXmlObjectBase(const CXmlObjectBase& other);
  CXmlObjectBase& operator=(const CXmlObjectBase& other);

  // Atomically increments the count; returns the new count.
  std::int32_t AddRef();
  // Atomically decrements the count and deletes the object when it reaches 0; returns the new
  // count. An object whose count reaches 0 while another is being destroyed on the same thread
  // is deleted when that destruction has returned, so releasing objects nested to any depth
  // takes bounded stack.
  std::int32_t Release();

  // The object that represents this one (collections return their owner-facing base).
  virtual CXmlObjectBase* GetBase() = 0;
  const CXmlObjectBase* GetBase() const { return this; }

  // ---- Output entry points ----
  // Writes the document to a file. CompressionType_ZLib is refused ("ZLIB Compression only
  // available for To Stream methods.") before the file is created. With AsyncToXmlFile(true) and
  // no compression the text is written as it is produced; otherwise the document is built with
  // ToXmlStream and written in one go ("Failed to write data to the file [%s] error [0x%08X]").
  virtual void ToXmlFile(
      const char* fileName, bool includeDocumentHeader = true, bool formatted = true,
      XmlEncoding encoding = XmlEncoding_UTF8, EOLType eolType = EOLType_LF,
      const CXmlSerializationContext& context = CXmlSerializationContext::GetDefaultContext(),
      CompressionType compression = CompressionType_None) const;
  // Fast Infoset output is not available in this version: throws COvException.
  virtual void ToFastInfosetFile(
      const char* fileName, FInfoDecl declaration = FInfoDecl_None,
      const CXmlSerializationContext& context = CXmlSerializationContext::GetDefaultContext(),
      CompressionType compression = CompressionType_None) const;
  // The whole document as text in the internal code page.
  virtual std::string ToXml(bool includeDocumentHeader = true, bool formatted = true,
                            EOLType eolType = EOLType_LF,
                            const CXmlSerializationContext& context =
                                CXmlSerializationContext::GetDefaultContext()) const;
  // The document encoded as asked (UTF-16 as little-endian bytes after the byte-order mark FF FE),
  // then gzip- or zlib-compressed when asked.
  virtual CBinaryData ToXmlStream(
      bool includeDocumentHeader = true, bool formatted = true,
      XmlEncoding encoding = XmlEncoding_UTF8, EOLType eolType = EOLType_LF,
      const CXmlSerializationContext& context = CXmlSerializationContext::GetDefaultContext(),
      CompressionType compression = CompressionType_None) const;
  // Fast Infoset output is not available in this version: throws COvException.
  virtual CBinaryData ToFastInfosetStream(
      FInfoDecl declaration = FInfoDecl_None,
      const CXmlSerializationContext& context = CXmlSerializationContext::GetDefaultContext(),
      CompressionType compression = CompressionType_None) const;

  // ---- Input entry points ----
  // Each parses the input into a tree with the context and reads this object from the document
  // element, replacing the object's content in place. A failure may leave the object partly
  // filled (a CElement, which is read while the document is parsed, is left unchanged).
  virtual void FromXmlFile(const char* fileName, const CXmlSerializationContext& context =
                                                     CXmlSerializationContext::GetDefaultContext());
  virtual void FromXml(const wchar_t* text, const CXmlSerializationContext& context =
                                                CXmlSerializationContext::GetDefaultContext());
  // The tree is built with `context`, but the object is read with the process-wide default
  // context, whatever `context` says about unknown or missing items and namespaces.
  virtual void FromXml(const char* text, const CXmlSerializationContext& context =
                                             CXmlSerializationContext::GetDefaultContext());
  virtual void FromXmlStream(
      const CBinaryData& data,
      const CXmlSerializationContext& context = CXmlSerializationContext::GetDefaultContext());
  // XML text in any encoding the parser knows, optionally gzip- or zlib-compressed.
  virtual void FromXmlStream(
      const unsigned char* bytes, std::uint32_t length,
      const CXmlSerializationContext& context = CXmlSerializationContext::GetDefaultContext());
  // Reads from the XML text of a wildcard element (through the 8-bit FromXml).
  virtual void FromXmlElement(
      const CElement* element,
      const CXmlSerializationContext& context = CXmlSerializationContext::GetDefaultContext());
  // Reads from an existing tree: the element's first child element is read.
  virtual void FromXmlElement(
      const CXmlElement* element,
      const CXmlSerializationContext& context = CXmlSerializationContext::GetDefaultContext());

 protected:
  // Does nothing; derived classes override it to observe their collections.
  void OnEvent(CXmlObjectBase* source, MsgType type, void* data) override;

  virtual ~CXmlObjectBase();

 public:
  // The namespace URI of the element this object writes.
  virtual std::string GetNamespace() const = 0;

 protected:
  virtual std::string GetTargetNamespace() const = 0;
  // Writes this object's attributes onto the current start tag; the base writes nothing.
  virtual void AttributesToXml_Int(CXmlWriter* writer,
                                   const CXmlSerializationContext& context) const;
  // Writes this object as an element (or inline content) through the writer.
  virtual void ToXml_Int(CXmlWriter* writer, bool isRoot, const char* namespaceUri,
                         const CXmlSerializationContext& context, bool flag) const = 0;
  // Reads this object from `current` (a child of `parent`; parent is null for the document
  // element) and returns the element at which reading continues.
  virtual CXmlElement* FromXml_Int(CXmlElement* parent, CXmlElement* current,
                                   const CXmlSerializationContext& context, bool flag) = 0;
  // An object that can be bound while its document is parsed returns a new reader for that
  // (the caller deletes it), which the entry points use instead of FromXml_Int on the finished
  // tree. The default returns null.
  virtual detail::CObjectReader* NewObjectReader(const CXmlSerializationContext& bindContext);

  const std::string& GetElementName() const { return m_elementName.str(); }
  void SetElementName(const char* name);
  // Shares the name's text: objects made in numbers pass one name to all of them.
  void SetElementName(const CSharedString& name) { m_elementName = name; }
  void SetElementName(CSharedString&& name) { m_elementName = std::move(name); }
  const CSharedString& SharedElementName() const { return m_elementName; }
  static void SetElementName(CXmlObjectBase* object, const char* name);

  // Reach the protected operations of another object; each counts one level of nesting. Null
  // objects are refused with COvInvalidParamException.
  static void ToXml_Int(const CXmlObjectBase* object, CXmlWriter* writer, bool isRoot,
                        const char* namespaceUri, const CXmlSerializationContext& context,
                        bool flag);
  static void AttributesToXml_Int(const CXmlObjectBase* object, CXmlWriter* writer,
                                  const CXmlSerializationContext& context);
  static CXmlElement* FromXml_Int(CXmlObjectBase* object, CXmlElement* parent, CXmlElement* current,
                                  const CXmlSerializationContext& context);

  // With schema type DTD the local names must be equal; otherwise the local names, and then the
  // namespace URIs unless the context ignores namespaces. A null element never matches.
  bool DoesElementNameMatch(const CXmlSerializationContext& context, const CXmlElement* element,
                            const char* name, const char* namespaceUri) const;
  // Whether the restriction (tokens "##any", "##other", "##local", "##targetNamespace" or a
  // namespace URI) admits the namespace. Null strings are taken as empty ones.
  bool IsNamespaceValid(const char* namespaceUri, const char* restriction,
                        const char* targetNamespace) const;
  // Throws COvInvalidNamespaceException when IsNamespaceValid is false.
  void TestNamespace(const char* namespaceUri, const char* restriction,
                     const char* targetNamespace) const;

  // Choice classes keep the element name of their one selected branch in `selected`.
  void Choice_SelectElement(const char* name, CXmlObjectBase* value, std::string& selected);
  void Choice_CollectionChanged(const char* name, std::int32_t count, std::string& selected);
  void Choice_SetElementValid(bool valid, const char* name, std::string& selected);
  // Reads the elements of a collection branch, advances `current` past them and sets `count` to
  // the number read.
  void Choice_Read_Collection(CXmlCollectionBase* collection, CXmlElement* parent,
                              CXmlElement*& current, std::int32_t& count,
                              const CXmlSerializationContext& context);

  void Throw_IfPropertyIsNull(CXmlObjectBase* value, const char* propertyName);
  void Throw_IfElementNameDiffers(CXmlObjectBase* value, const char* expectedName);

  // Each calls sink->OnEvent with the collection's GetBase() as the source; a null sink is
  // ignored. The remove events pass a pointer to the index as data. These and
  // Choice_Read_Collection are compiled with the collection base (src/core/
  // XmlObjectBaseCollections.cpp, once OvXmlLib6/metadata/XmlCollectionBase.h exists).
  static void FireOnCollectionChangeEvent(IEventSink* sink, CXmlCollectionBase* collection);
  static void FireOnCollectionAddEvent(IEventSink* sink, CXmlCollectionBase* collection,
                                       void* item);
  static void FireOnCollectionAddCompleteEvent(IEventSink* sink, CXmlCollectionBase* collection,
                                               void* item);
  static void FireOnCollectionRemoveEvent(IEventSink* sink, CXmlCollectionBase* collection,
                                          int index);
  static void FireOnCollectionRemoveCompleteEvent(IEventSink* sink, CXmlCollectionBase* collection,
                                                  int index);

 private:
  // Writes the document to a text stream with a new text writer (declaration, root, close).
  void WriteDocument(CTextStream& stream, bool includeDocumentHeader, bool formatted,
                     EOLType eolType, const CXmlSerializationContext& context) const;
  // Writes the document to a byte stream with a new Fast Infoset writer.
  void WriteFastInfoset(CBinaryStream& stream, FInfoDecl declaration,
                        const CXmlSerializationContext& context) const;
  // Reads this object from a loaded document with `bindContext`.
  void ReadDocument(const CXmlDocument& document, const CXmlSerializationContext& bindContext);
  // Loads a new document with the parse context through `load` (a callable taking the
  // CXmlDocument&) and reads this object from it with `bindContext`.
  template <typename Load>
  void LoadAndRead(const CXmlSerializationContext& parseContext,
                   const CXmlSerializationContext& bindContext, Load load);

  friend class detail::CFirstReference;
  friend class detail::CRootOptions;
  // Descriptors reach the protected operations of the objects they read and write.
  friend class OvXmlLib6Data::CAttributeInfo;
  friend class OvXmlLib6Data::CElementInfo;

  std::atomic<std::int32_t> m_refCount;
  CSharedString m_elementName;
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_CORE_XMLOBJECTBASE_H
