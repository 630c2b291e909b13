// Schemas written by others, compiled by the schema compiler at build time: their documents read
// into the generated classes and written back, as XML and through Fast Infoset, keep their
// content.
#include "gdalvrt.h"
#include "gmlasconf.h"
#include "nitf.h"
#include "ocil-2.0.h"
#include "ogrvrt.h"
#include "unit/TestSupport.h"
#include "vdv452.h"

#include <OvXmlLib6.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using namespace OvXmlLib6;

const std::string kDir = OVXML_REALWORLD_DIR;

// The content of a document, one line per item, without the layout between elements and without
// the schema-location hints, which name files rather than content.
std::string CanonicalOf(const std::string& xml) {
  CXmlDocument document;
  document.LoadXml(xml.c_str());
  std::vector<std::string> lines;
  test::Canonical(document.GetDocumentElement(), 0, lines, false);
  std::string out;
  for (const std::string& line : lines) {
    if (line.find("XMLSchema-instance}noNamespaceSchemaLocation") == std::string::npos &&
        line.find("XMLSchema-instance}schemaLocation") == std::string::npos)
      out += line + "\n";
  }
  return out;
}

// Reads the document into a T, writes it as XML and through Fast Infoset, and expects the same
// content each way.
template <class T>
void ExpectRoundTrip(const std::string& file) {
  SCOPED_TRACE(file);
  const std::string xml = test::ReadFile(kDir + "/" + file);
  CXmlSerializationContext context;
  context.SetNoOptionalAttributeDefaultOutput(true);  // the documents leave defaults out
  try {
    CSmartPtr<T> object = new T();
    object->FromXml(xml.c_str());
    const std::string written = object->ToXml(false, false, EOLType_LF, context);
    EXPECT_EQ(CanonicalOf(written), CanonicalOf(xml));
    CSmartPtr<T> again = new T();
    again->FromXmlStream(object->ToFastInfosetStream(FInfoDecl_None, context), context);
    EXPECT_EQ(again->ToXml(false, false, EOLType_LF, context), written);
  } catch (const COvException& e) {
    ADD_FAILURE() << e.GetFullMessage();
  }
}

TEST(RealWorldSchemas, DocumentsRoundTripThroughTheGeneratedClasses) {
  ExpectRoundTrip<vdv452::CLayers>("gdal/vdv452.xml");
  ExpectRoundTrip<gmlasconf::CConfiguration>("gdal/gmlasconf.xml");
  ExpectRoundTrip<nitf::CRoot>("gdal/nitf.xml");
  ExpectRoundTrip<ogrvrt::COGRVRTDataSource>("gdal/ogrvrt.xml");
  ExpectRoundTrip<gdalvrt::CVRTDataset>("gdal/gdalvrt.xml");
  ExpectRoundTrip<ocil::COcil>("openscap/ocil.xml");
}

}  // namespace
