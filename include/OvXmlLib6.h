// OvXmlLib6: XML data-binding run-time library. This umbrella header brings in the whole public
// API of the namespaces OvXmlLib6 and OvXmlLib6Data.
#ifndef OVXMLLIB6_H
#define OVXMLLIB6_H

#include "OvXmlLib6/core/CriticalSection.h"
#include "OvXmlLib6/core/Enums.h"
#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/core/Export.h"
#include "OvXmlLib6/core/InstanceMonitor.h"
#include "OvXmlLib6/core/SerializationContext.h"
#include "OvXmlLib6/core/SmartPtr.h"
#include "OvXmlLib6/fastinfoset/Encodings.h"
#include "OvXmlLib6/fastinfoset/FastInfosetBinaryData.h"
#include "OvXmlLib6/fastinfoset/FastInfosetContext.h"
#include "OvXmlLib6/fastinfoset/Vocabulary.h"
#include "OvXmlLib6/types/BigInteger.h"
#include "OvXmlLib6/types/BinaryData.h"
#include "OvXmlLib6/types/Conversions.h"
#include "OvXmlLib6/types/DateTime.h"
#include "OvXmlLib6/types/DateTimeSpan.h"
#include "OvXmlLib6/types/Decimal.h"
#include "OvXmlLib6/types/ItemType.h"
#include "OvXmlLib6/types/PrimitiveRestrictions.h"
#include "OvXmlLib6/types/SystemTime.h"
#include "OvXmlLib6/types/Variant.h"
#include "OvXmlLib6/types/WhitespaceUtils.h"
#include "OvXmlLib6/xml/BinaryStream.h"
#include "OvXmlLib6/xml/CharEncoding.h"
#include "OvXmlLib6/xml/Compression.h"
#include "OvXmlLib6/xml/StringBuffer.h"
#include "OvXmlLib6/xml/TextStream.h"
#include "OvXmlLib6/xml/XmlAttribute.h"
#include "OvXmlLib6/xml/XmlDocument.h"
#include "OvXmlLib6/xml/XmlElement.h"
#include "OvXmlLib6/xml/XmlTextWriter.h"
#include "OvXmlLib6/xml/XmlWriter.h"

#endif  // OVXMLLIB6_H
