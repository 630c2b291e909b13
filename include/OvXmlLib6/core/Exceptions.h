// The library's only failure channel: COvException and the six classes that let callers catch by
// category, plus FormatString, the printf-style formatter every message is built with.
//
//   COvException
//   +-- COvValidationException        document does not match the schema
//   |   +-- COvInvalidValueException  a value cannot be converted or is out of range
//   |   +-- COvInvalidNamespaceException
//   +-- COvInvalidParamException      bad argument (index out of range, null for a mandatory value)
//   +-- COvInvalidStateException      call not allowed in the object's current state
//   +-- COvOverFlowException          a decimal does not fit the requested machine type
//
// An exception may own an inner exception (a private deep copy), so that a failure deep in a
// document reports the path from the outermost element inwards through GetFullMessage().
#ifndef OVXMLLIB6_CORE_EXCEPTIONS_H
#define OVXMLLIB6_CORE_EXCEPTIONS_H

#include "OvXmlLib6/core/Export.h"

#include <string>

namespace OvXmlLib6 {

class OVXML_API COvException {
 public:
  COvException();
  explicit COvException(std::string message);
  // The inner exception is deep-copied, so `inner` may be a temporary or a caught reference.
  COvException(std::string message, const COvException& inner);
  // Takes the chain of `inner` over instead of copying it (only `inner` itself is copied, without
  // its chain), so that wrapping a failure once per level of a deep document costs the same at
  // every level. `inner` is left without an inner exception.
  COvException(std::string message, COvException&& inner);
  COvException(const COvException& other);
  // Copies the message and a clone of other's inner chain; the previous inner chain is released.
  COvException& operator=(const COvException& other);
  virtual ~COvException();

  // This exception's own message.
  std::string GetMessage() const;
  // The message followed by the inner chain's messages, one per line, outermost first.
  std::string GetFullMessage() const;
  // The inner exception, or null. Ownership stays with this exception.
  const COvException* GetInnerException() const;

 protected:
  // A heap copy of the most-derived object, inner chain included.
  virtual COvException* Clone() const;

 private:
  // Copies a chain link by link in a loop (each Clone made without its inner chain), so that a
  // chain of any length is copied without deep recursion.
  static COvException* CloneChain(const COvException* first);
  // A copy of this exception alone, without its inner chain.
  COvException* CloneLink() const;

  std::string m_message;
  COvException* m_inner;
};

// Declares a category class with the same four constructors as the base. The copy constructor
// takes any COvException so a caught base reference can be rethrown under a more specific class.
#define OVXML_DECLARE_EXCEPTION(Name, Base)               \
  class OVXML_API Name : public Base {                    \
   public:                                                \
    Name();                                               \
    explicit Name(std::string message);                   \
    Name(std::string message, const COvException& inner); \
    Name(std::string message, COvException&& inner);      \
    Name(const COvException& other);                      \
    Name(const Name& other);                              \
    Name& operator=(const COvException& other);           \
    Name& operator=(const Name& other);                   \
    ~Name() override;                                     \
                                                          \
   protected:                                             \
    COvException* Clone() const override;                 \
  }

OVXML_DECLARE_EXCEPTION(COvValidationException, COvException);
OVXML_DECLARE_EXCEPTION(COvInvalidValueException, COvValidationException);
OVXML_DECLARE_EXCEPTION(COvInvalidNamespaceException, COvValidationException);
OVXML_DECLARE_EXCEPTION(COvInvalidParamException, COvException);
OVXML_DECLARE_EXCEPTION(COvInvalidStateException, COvException);
OVXML_DECLARE_EXCEPTION(COvOverFlowException, COvException);

#undef OVXML_DECLARE_EXCEPTION

// printf-style formatting into a string that is never truncated, whatever the argument lengths.
// Besides the C library's conversions it accepts the size prefix "I64" (a 64-bit integer
// argument) and ignores the legacy pointer-size prefixes "F" and "N".
OVXML_API std::string FormatString(const char* format, ...) OVXML_PRINTF_FORMAT(1, 2);

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_CORE_EXCEPTIONS_H
