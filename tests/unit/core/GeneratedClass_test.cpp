// The generated-class engine through the hand-written schema of TestSchema.h: round trips of
// every content model, the failures of bad documents with their whole message chains, the
// context's ignore flags, the writing rules and the nesting limit.
#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/core/XmlObjectBase.h"
#include "OvXmlLib6/xml/XmlDocument.h"
#include "OvXmlLib6/xml/XmlElement.h"
#include "core/Support.h"
#include "unit/TestSupport.h"
#include "unit/core/TestSchema.h"

#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using namespace test_schema;
using OvXmlLib6::test::ChainOf;
using Context = CXmlSerializationContext;

const std::string kXsiDecl = " xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance'";

std::wstring Wide(const std::string& text) { return std::wstring(text.begin(), text.end()); }

// Reads with the context (through the wide-text entry point, which passes it on).
template <class T>
void ReadInto(T* object, const std::string& xml, const Context& context) {
  object->FromXml(Wide(xml).c_str(), context);
}

template <class T>
CSmartPtr<T> Read(const std::string& xml, const Context& context = Context()) {
  CSmartPtr<T> object = new T();
  ReadInto(object.get(), xml, context);
  return object;
}

std::string Write(const CXmlObjectBase* object, const Context& context = Context()) {
  return object->ToXml(false, false, EOLType_LF, context);
}

std::string Order(const std::string& body, const std::string& attributes = " id='1'") {
  return "<order xmlns='urn:t'" + attributes + ">" + body + "</order>";
}
const std::string kOrderMin = "<name>n</name><color>red</color><ship><street>s</street></ship>";
const std::string kCircle = "<shape xsi:type='Circle'><radius>1</radius></shape>";
const std::string kMore = "<more xsi:type='Square'><side>2</side></more>";
std::string Drawing(const std::string& body) {
  return "<drawing xmlns='urn:t'" + kXsiDecl + ">" + body + "</drawing>";
}

// A reader of one class of the schema, for the tables.
using Reader = std::function<void(const std::string&, const Context&)>;
template <class T>
Reader ReaderOf() {
  return [](const std::string& xml, const Context& context) { Read<T>(xml, context); };
}

// ---- round trips ----

struct RoundTrip {
  const char* name;
  std::function<CSmartPtr<CXmlObjectBase>()> make;   // a filled object
  std::function<CSmartPtr<CXmlObjectBase>()> fresh;  // an empty one of the same class
  std::string written;                               // what the filled object writes
};

template <class T>
std::function<CSmartPtr<CXmlObjectBase>()> Fresh() {
  return [] { return CSmartPtr<CXmlObjectBase>(new T()); };
}

CSmartPtr<CCircle> Circle(const char* name, int radius) {
  CSmartPtr<CCircle> c = new CCircle(name);
  c->radius = radius;
  return c;
}
CSmartPtr<CSquare> Square(const char* name, int side) {
  CSmartPtr<CSquare> s = new CSquare(name);
  s->side = side;
  return s;
}
CSmartPtr<CAddress> Address(const char* name, const char* street, int zip) {
  CSmartPtr<CAddress> a = new CAddress(name);
  a->street = street;
  a->zip = zip;
  return a;
}
CSmartPtr<CElement> Any(const char* name, const char* ns, const char* text) {
  CSmartPtr<CElement> e = new CElement(name, ns);
  e->SetText(text);
  return e;
}

CSmartPtr<CXmlObjectBase> FullOrder() {
  CSmartPtr<COrder> o = new COrder();
  o->id = 7;
  o->status = 1;
  o->note = "hi";
  o->anyAttributes->Add("urn:x", "v", "a");
  o->name = "pen";
  o->qty = 2;
  o->tags->Add("t1");
  o->tags->Add("t2");
  o->color = 1;
  o->size = 2;
  o->marks->Add("red");
  o->ship->street = "s";
  o->bill = Address("bill", "b", 5);
  CSmartPtr<CLine> line = o->lines->Add();
  line->sku = "k";
  line->text = "first";
  return o.get();
}

CSmartPtr<CXmlObjectBase> FullDrawing() {
  CSmartPtr<CDrawing> d = new CDrawing();
  d->shape = Circle("shape", 1).get();
  d->spare = Square("spare", 2).get();
  d->more->Add(Square("more", 3).get());
  d->more->Add(Circle("more", 4).get());
  d->memo = Any("memo", "urn:t", "m");
  d->memo->GetAttributes()->Add(kNs, "1", "q");
  d->any = Any("x", "urn:x", "1");
  d->extra->Add(Any("y", "urn:y", "2").get());
  d->extra->Add(Any("z", "", "3").get());
  d->dims = new CDims();
  d->dims->w = 3;
  d->dims->h = 4;
  d->dims->unit = "cm";
  return d.get();
}

CSmartPtr<CXmlObjectBase> FullBag() {
  CSmartPtr<CBag> b = new CBag();
  b->a = 1;
  b->b = "two";
  b->c->Add(3);
  b->e = 2;
  b->f = 0;
  b->g->Add("blue");
  b->addr->street = "s";
  b->bill = Address("bill", "b", 9);
  CSmartPtr<CLine> line = b->lines->Add();
  line->sku = "k";
  line->text = "";
  b->more->Add(Circle("more", 5).get());
  b->memo = Any("memo", "urn:t", "");
  b->any = Any("x", "urn:x", "");
  b->extra->Add(Any("y", "urn:y", "").get());
  return b.get();
}

CSmartPtr<CXmlObjectBase> Nodes(int depth) {
  CSmartPtr<CNode> root = new CNode();
  CNode* at = root.get();
  for (int i = 0; i < depth; ++i) {
    at->value = i;
    at->child = new CNode("node");
    at = at->child.get();
  }
  return root.get();
}

template <class T, class F>
std::function<CSmartPtr<CXmlObjectBase>()> With(F fill) {
  return [fill] {
    CSmartPtr<T> object = new T();
    fill(*object);
    return CSmartPtr<CXmlObjectBase>(object.get());
  };
}

TEST(GeneratedClassRoundTrip, EveryContentModelReadsBackWhatItWrote) {
  const std::vector<RoundTrip> cases = {
      {"sequence of primitive, enum and class members", &FullOrder, Fresh<COrder>(),
       R"(<AA:order xmlns:AA="urn:t" id="7" status="closed" note="hi" xmlns:AB="urn:x" AB:a="v"><AA:name>pen</AA:name><AA:qty>2</AA:qty><AA:tag>t1</AA:tag><AA:tag>t2</AA:tag><AA:color>green</AA:color><AA:size>blue</AA:size><AA:mark>red</AA:mark><AA:ship><AA:street>s</AA:street></AA:ship><AA:bill><AA:street>b</AA:street><AA:zip>5</AA:zip></AA:bill><AA:line sku="k">first</AA:line></AA:order>)"},
      // The pseudo member dims puts its unit on the drawing's start tag and w, h in its content.
      {"sequence of abstract, wildcard and pseudo members", &FullDrawing, Fresh<CDrawing>(),
       R"(<AA:drawing xmlns:AA="urn:t" unit="cm"><AA:shape xmlns:AB="http://www.w3.org/2001/XMLSchema-instance" AB:type="Circle"><AA:radius>1</AA:radius></AA:shape><AA:spare xmlns:AB="http://www.w3.org/2001/XMLSchema-instance" AB:type="Square"><AA:side>2</AA:side></AA:spare><AA:more xmlns:AB="http://www.w3.org/2001/XMLSchema-instance" AB:type="Square"><AA:side>3</AA:side></AA:more><AA:more xmlns:AB="http://www.w3.org/2001/XMLSchema-instance" AB:type="Circle"><AA:radius>4</AA:radius></AA:more><AA:memo AA:q="1">m</AA:memo><AB:x xmlns:AB="urn:x">1</AB:x><AB:y xmlns:AB="urn:y">2</AB:y><z>3</z><AA:w>3</AA:w><AA:h>4</AA:h></AA:drawing>)"},
      {"all group", &FullBag, Fresh<CBag>(),
       R"(<AA:bag xmlns:AA="urn:t"><AA:a>1</AA:a><AA:b>two</AA:b><AA:c>3</AA:c><AA:e>blue</AA:e><AA:f>red</AA:f><AA:g>blue</AA:g><AA:addr><AA:street>s</AA:street></AA:addr><AA:bill><AA:street>b</AA:street><AA:zip>9</AA:zip></AA:bill><AA:line sku="k"/><AA:more xmlns:AB="http://www.w3.org/2001/XMLSchema-instance" AB:type="Circle"><AA:radius>5</AA:radius></AA:more><AA:memo/><AB:x xmlns:AB="urn:x"/><AB:y xmlns:AB="urn:y"/></AA:bag>)"},
      {"recursive type", [] { return Nodes(3); }, Fresh<CNode>(),
       R"(<AA:node xmlns:AA="urn:t" v="0"><AA:node v="1"><AA:node v="2"><AA:node/></AA:node></AA:node></AA:node>)"},
      {"choice: primitive", With<CPick>([](CPick& p) { p.num = 7; }), Fresh<CPick>(),
       R"(<AA:pick xmlns:AA="urn:t"><AA:num>7</AA:num></AA:pick>)"},
      {"choice: enum", With<CPick>([](CPick& p) { p.color = 2; }), Fresh<CPick>(),
       R"(<AA:pick xmlns:AA="urn:t"><AA:color>blue</AA:color></AA:pick>)"},
      {"choice: class", With<CPick>([](CPick& p) { p.addr = Address("addr", "s", 1); }),
       Fresh<CPick>(),
       R"(<AA:pick xmlns:AA="urn:t"><AA:addr><AA:street>s</AA:street><AA:zip>1</AA:zip></AA:addr></AA:pick>)"},
      {"choice: abstract class", With<CPick>([](CPick& p) { p.shape = Square("shape", 3).get(); }),
       Fresh<CPick>(),
       R"(<AA:pick xmlns:AA="urn:t"><AA:shape xmlns:AB="http://www.w3.org/2001/XMLSchema-instance" AB:type="Square"><AA:side>3</AA:side></AA:shape></AA:pick>)"},
      {"choice: wildcard", With<CPick>([](CPick& p) { p.any = Any("w", "urn:w", "x"); }),
       Fresh<CPick>(), R"(<AA:pick xmlns:AA="urn:t"><AB:w xmlns:AB="urn:w">x</AB:w></AA:pick>)"},
      {"choice collection: primitive", With<CPicks>([](CPicks& p) {
         p.n->Add(1);
         p.n->Add(2);
       }),
       Fresh<CPicks>(), R"(<AA:picks xmlns:AA="urn:t"><AA:n>1</AA:n><AA:n>2</AA:n></AA:picks>)"},
      {"choice collection: enum", With<CPicks>([](CPicks& p) { p.c->Add("green"); }),
       Fresh<CPicks>(), R"(<AA:picks xmlns:AA="urn:t"><AA:c>green</AA:c></AA:picks>)"},
      {"choice collection: class", With<CPicks>([](CPicks& p) {
         CSmartPtr<CLine> line = p.lines->Add();
         line->sku = "k";
         line->text = "t";
       }),
       Fresh<CPicks>(), R"(<AA:picks xmlns:AA="urn:t"><AA:line sku="k">t</AA:line></AA:picks>)"},
      {"choice collection: abstract class",
       With<CPicks>([](CPicks& p) { p.s->Add(Circle("s", 8).get()); }), Fresh<CPicks>(),
       R"(<AA:picks xmlns:AA="urn:t"><AA:s xmlns:AB="http://www.w3.org/2001/XMLSchema-instance" AB:type="Circle"><AA:radius>8</AA:radius></AA:s></AA:picks>)"},
      {"choice collection: wildcard",
       With<CPicks>([](CPicks& p) { p.any->Add(Any("w", "urn:w", "").get()); }), Fresh<CPicks>(),
       R"(<AA:picks xmlns:AA="urn:t"><AB:w xmlns:AB="urn:w"/></AA:picks>)"},
  };
  for (const RoundTrip& c : cases) {
    SCOPED_TRACE(c.name);
    std::string written;
    EXPECT_EQ(ChainOf([&] { written = Write(c.make()); }), "no exception");
    EXPECT_EQ(written, c.written);
    CSmartPtr<CXmlObjectBase> back = c.fresh();
    EXPECT_EQ(ChainOf([&] { back->FromXml(written.c_str()); }), "no exception");
    EXPECT_EQ(ChainOf([&] { EXPECT_EQ(Write(back), written); }), "no exception");
    // Through Fast Infoset, plain and with typed encodings: the same object comes back.
    Context typed;
    typed.GetFIContext().SetSuggestedValues();
    for (const Context* context :
         std::vector<const Context*>{&Context::GetDefaultContext(), &typed}) {
      CSmartPtr<CXmlObjectBase> viaFi = c.fresh();
      EXPECT_EQ(ChainOf([&] {
                  viaFi->FromXmlStream(c.make()->ToFastInfosetStream(FInfoDecl_None, *context),
                                       *context);
                }),
                "no exception");
      EXPECT_EQ(ChainOf([&] { EXPECT_EQ(Write(viaFi), written); }), "no exception");
    }
  }
}

// ---- bad documents, and the same documents under the ignore flags ----

// The message chains of the failures below start with the wrapper of the element read.
std::string In(const char* element, const std::string& chain) {
  return "Validation: Failed to process the element [" + std::string(element) + "]\n" + chain;
}
const char* const kOk = "no exception";
// The flag changes nothing: the same failure.
const char* const kSame = "same";

struct BadInput {
  const char* name;
  Reader read;
  std::string xml;
  std::string failure;                   // the chain with the default context
  std::function<void(Context&)> ignore;  // a flag that may change the outcome
  std::string failureIgnored;            // the chain with that flag set, or kSame
};

void IgnoreUnknownElements(Context& c) { c.SetIgnoreUnknownElements(true); }
void IgnoreUnknownAttributes(Context& c) { c.SetIgnoreUnknownAttributes(true); }
void IgnoreMissingChoice(Context& c) { c.SetIgnoreMissingChoice(true); }
void IgnoreMissingMandatory(Context& c) { c.SetIgnoreMissingMandatoryElements(true); }
void IgnoreCounts(Context& c) { c.SetIgnoreInvalidCollectionCounts(true); }
void IgnoreNamespaces(Context& c) { c.SetIgnoreNamespaces(true); }

TEST(GeneratedClassReading, BadDocumentsFailWithTheirPathAndTheFlagsAcceptExactlyTheirCase) {
  const std::string leftover = "Validation: Failed read all the elements held within the element ";
  const std::string required = "Validation: Failed to find a required element ";
  const std::string i4 = "Value: The value [x] can not be converted to a i4";
  const std::vector<BadInput> cases = {
      {"unknown element at the end", ReaderOf<COrder>(), Order(kOrderMin + "<zzz/>"),
       In("order", leftover + "[order]. The unexpected element [zzz] remains un processed"),
       IgnoreUnknownElements, kOk},
      {"unknown element before a required one", ReaderOf<COrder>(), Order("<zzz/>" + kOrderMin),
       In("order", required + "[name]"), IgnoreUnknownElements, kOk},
      {"missing primitive element", ReaderOf<COrder>(),
       Order("<name>n</name><ship><street>s</street></ship>"), In("order", required + "[color]"),
       IgnoreMissingMandatory, kOk},
      {"missing class element", ReaderOf<COrder>(), Order("<name>n</name><color>red</color>"),
       In("order", required + "[ship]"), IgnoreMissingMandatory, kOk},
      {"repeated element", ReaderOf<COrder>(), Order("<name>n</name>" + kOrderMin),
       In("order", required + "[color]"), IgnoreUnknownElements, kOk},
      // Skipping unknown elements finds name past color, but then color is behind the cursor.
      {"misplaced element", ReaderOf<COrder>(),
       Order("<color>red</color><name>n</name><ship><street>s</street></ship>"),
       In("order", required + "[name]"), IgnoreUnknownElements, In("order", required + "[color]")},
      {"element in another namespace", ReaderOf<COrder>(),
       Order("<name xmlns='urn:x'>n</name><color>red</color><ship><street>s</street></ship>"),
       In("order", required + "[name]"), IgnoreNamespaces, kOk},
      {"bad element value", ReaderOf<COrder>(),
       Order("<name>n</name><qty>x</qty><color>red</color><ship><street>s</street></ship>"),
       In("order", i4), IgnoreUnknownElements, kSame},
      {"bad attribute value", ReaderOf<COrder>(), Order(kOrderMin, " id='x'"), In("order", i4),
       IgnoreUnknownAttributes, kSame},
      // The enum's from-text function gets the text as it stands.
      {"enum text with a blank", ReaderOf<COrder>(),
       Order("<name>n</name><color> red</color><ship><street>s</street></ship>"),
       In("order", "Value: Invalid Color [ red]"), IgnoreUnknownElements, kSame},
      {"missing required attribute", ReaderOf<COrder>(), Order(kOrderMin, ""),
       In("order", "Validation: Failed to find the required Attribute [id]"),
       IgnoreUnknownAttributes, kSame},
      {"instance attributes and namespace declarations", ReaderOf<CNode>(),
       "<node xmlns='urn:t' xmlns:p='urn:p'" + kXsiDecl +
           " xsi:type='node' xsi:schemaLocation='urn:t t.xsd'/>",
       kOk, IgnoreUnknownAttributes, kOk},
      // The instance namespace's nil marker is not among the attributes skipped.
      {"xsi:nil", ReaderOf<CNode>(), "<node xmlns='urn:t'" + kXsiDecl + " xsi:nil='false'/>",
       In("node", "Validation: Unexpected Attribute [nil] found."), IgnoreUnknownAttributes, kOk},
      {"unexpected attribute", ReaderOf<CNode>(), "<node xmlns='urn:t' v='1' foo='2'/>",
       In("node", "Validation: Unexpected Attribute [foo] found."), IgnoreUnknownAttributes, kOk},
      // The wildcard attribute takes every attribute, so its namespace check is not skipped.
      {"wildcard attribute in the target namespace", ReaderOf<COrder>(),
       Order(kOrderMin, " id='1' xmlns:t='urn:t' t:x='1'"),
       In("order",
          "Namespace: Invalid namespace [urn:t]. The namespace must be one of [##other] where the "
          "target namespace is [urn:t]"),
       IgnoreUnknownAttributes, kSame},
      {"choice with no branch", ReaderOf<CPicks>(), "<picks xmlns='urn:t'/>",
       In("picks",
          "Validation: No child elements within the element [picks] were populated. The element "
          "represents a choice, so one and only one element should be populated. The element "
          "contained no sutable child elements"),
       IgnoreMissingChoice, kOk},
      {"choice of optional branches with none", ReaderOf<CPick>(), "<pick xmlns='urn:t'/>", kOk,
       IgnoreMissingChoice, kOk},
      {"choice with two branches", ReaderOf<CPick>(),
       "<pick xmlns='urn:t'><num>1</num><color>red</color></pick>",
       In("pick", leftover + "[pick]. The unexpected element [color] remains un processed"),
       IgnoreUnknownElements, kOk},
      {"unknown element in a choice", ReaderOf<CPick>(),
       "<pick xmlns='urn:t'><zzz/><num>1</num></pick>",
       In("pick", leftover + "[pick]. The unexpected element [zzz] remains un processed"),
       IgnoreUnknownElements, kOk},
      {"too many in a collection", ReaderOf<COrder>(),
       Order("<name>n</name><tag>a</tag><tag>b</tag><tag>c</tag><color>red</color>"
             "<ship><street>s</street></ship>"),
       In("order",
          "Validation: The Maximum number of [tag] elements allowed in this collection is 2"),
       IgnoreCounts, kOk},
      {"too few in a collection", ReaderOf<CDrawing>(), Drawing(kCircle + "<memo/>"),
       In("drawing",
          "Validation: The Minimum number of [more] elements allowed in this collection is 1"),
       IgnoreCounts, kOk},
      {"too many in a choice collection", ReaderOf<CPicks>(),
       "<picks xmlns='urn:t'><n>1</n><n>2</n><n>3</n></picks>",
       In("picks",
          "Validation: The Maximum number of [n] elements allowed in this collection is 2"),
       IgnoreCounts, kOk},
      {"unknown xsi:type", ReaderOf<CDrawing>(),
       Drawing("<shape xsi:type='Triangle'/>" + kMore + "<memo/>"),
       In("drawing", "Validation: Failed to find a suitable substitution element for [shape]"),
       IgnoreUnknownElements, kSame},
      {"missing wildcard element", ReaderOf<CDrawing>(), Drawing(kCircle + kMore),
       In("drawing", required + "[memo]"), IgnoreMissingMandatory, kOk},
      {"failure three levels deep", ReaderOf<CNode>(),
       "<node xmlns='urn:t'><node><node v='x'/></node></node>",
       In("node", In("node", In("node", i4))), IgnoreUnknownAttributes, kSame},
      {"missing member of an all group", ReaderOf<CBag>(),
       "<bag xmlns='urn:t'><e>red</e><memo/></bag>",
       In("bag", "Validation: Failed to find the mandatory element [a]"), IgnoreUnknownElements,
       kSame},
      {"repeated member of an all group", ReaderOf<CBag>(),
       "<bag xmlns='urn:t'><memo/><a>1</a><e>red</e><a>2</a></bag>",
       In("bag", leftover + "[bag]. The unexpected element [a] remains un processed"),
       IgnoreUnknownElements, kOk},
      {"all group in any order", ReaderOf<CBag>(),
       "<bag xmlns='urn:t'><e>red</e><memo/><c>1</c><a>1</a><c>2</c></bag>", kOk, IgnoreCounts,
       kOk},
      {"abstract member of an all group", ReaderOf<CBagAbs>(),
       "<bagAbs xmlns='urn:t'" + kXsiDecl + ">" + kCircle + "</bagAbs>",
       In("bagAbs",
          std::string("Exception: AllAbsClsMndElm.ProcessXml, has not been implemented fully, "
                      "contact ") +
              OvXmlLib6::detail::kSupportAddress),
       IgnoreUnknownElements, kSame},
  };
  for (const BadInput& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(ChainOf([&] { c.read(c.xml, Context()); }), c.failure);
    Context context;
    c.ignore(context);
    EXPECT_EQ(ChainOf([&] { c.read(c.xml, context); }),
              c.failureIgnored == kSame ? c.failure : c.failureIgnored);
  }
}

// The 8-bit FromXml reads with the default context whatever it is given; the other entry points
// pass the context on.
TEST(GeneratedClassReading, OnlyTheEightBitEntryPointIgnoresTheContext) {
  const std::string xml = Order(kOrderMin + "<zzz/>");
  Context context;
  context.SetIgnoreUnknownElements(true);
  CSmartPtr<COrder> order = new COrder();
  EXPECT_EQ(ChainOf([&] { order->FromXml(xml.c_str(), context); }),
            In("order",
               "Validation: Failed read all the elements held within the element "
               "[order]. The unexpected element [zzz] remains un processed"));
  EXPECT_EQ(ChainOf([&] {
              order->FromXmlStream(reinterpret_cast<const unsigned char*>(xml.data()),
                                   static_cast<std::uint32_t>(xml.size()), context);
            }),
            kOk);
  EXPECT_EQ(order->name, "n");
}

// The primitive attribute descriptor compares namespaces even when the context ignores them;
// the enum one does not.
TEST(GeneratedClassReading, IgnoringNamespacesReachesEnumAttributesButNotPrimitiveOnes) {
  const std::string xml = Order(kOrderMin, " id='1' xmlns:x='urn:x' x:status='closed' x:id='5'");
  CSmartPtr<COrder> strict = Read<COrder>(xml);
  EXPECT_FALSE(strict->status);
  EXPECT_EQ(strict->anyAttributes->GetCount(), 2);
  Context context;
  context.SetIgnoreNamespaces(true);
  CSmartPtr<COrder> loose = Read<COrder>(xml, context);
  EXPECT_EQ(loose->status, 1);
  EXPECT_EQ(loose->id, 1);
  ASSERT_EQ(loose->anyAttributes->GetCount(), 1);
  EXPECT_EQ(loose->anyAttributes->Item(0)->GetName(), "id");
}

TEST(GeneratedClassReading, ReadingAgainReplacesTheContent) {
  CSmartPtr<COrder> order = Read<COrder>(
      Order("<name>n</name><qty>3</qty><color>red</color><ship><street>s</street><zip>1</zip>"
            "</ship><bill><street>b</street></bill>"));
  EXPECT_EQ(order->qty, 3);
  ReadInto(order.get(), Order(kOrderMin), Context());
  EXPECT_FALSE(order->qty);
  EXPECT_FALSE(order->ship->zip);
  EXPECT_FALSE(order->bill);
}

// ---- writing ----

struct BadObject {
  const char* name;
  std::function<CSmartPtr<CXmlObjectBase>()> make;
  std::string failure;
  std::function<void(Context&)> ignore;
  std::string failureIgnored;
};

std::string Out(const char* element, const std::string& chain) {
  return "Validation: Failed to convert the element [" + std::string(element) + "] to XML\n" +
         chain;
}
std::string OutAttributes(const std::string& chain) {
  return Out("order", "Exception: Failed to convert attributes to XML\n" + chain);
}

CSmartPtr<COrder> MinimalOrder() {
  CSmartPtr<COrder> o = new COrder();
  o->id = 1;
  o->name = "n";
  o->color = 0;
  o->ship->street = "s";
  return o;
}

template <class F>
std::function<CSmartPtr<CXmlObjectBase>()> Changed(F change) {
  return [change] {
    CSmartPtr<COrder> o = MinimalOrder();
    change(*o);
    return CSmartPtr<CXmlObjectBase>(o.get());
  };
}

TEST(GeneratedClassWriting, BadObjectsFailWithTheirPathAndTheFlagsAcceptExactlyTheirCase) {
  const char* const kNoBranch =
      "Validation: This element is a choice, and as such must have at one (and only one) valid "
      "item, currently there are none set";
  const std::vector<BadObject> cases = {
      {"facet of an element", Changed([](COrder& o) { o.name = "toolongname"; }),
       Out("order", "Exception: Invalid Value for name [toolongname]"), IgnoreCounts, kSame},
      {"facet of an attribute", Changed([](COrder& o) { o.note = "toolong"; }),
       OutAttributes("Exception: Invalid Value for note [toolong]"), IgnoreCounts, kSame},
      {"required attribute unset", Changed([](COrder& o) { o.id.reset(); }),
       OutAttributes("Exception: Invalid Type 0 to convert to string"), IgnoreCounts, kSame},
      // An unset mandatory primitive writes nothing.
      {"required element unset", Changed([](COrder& o) { o.name.reset(); }), kOk, IgnoreCounts,
       kOk},
      {"too many in a collection", Changed([](COrder& o) {
         for (const char* t : {"a", "b", "c"}) o.tags->Add(t);
       }),
       Out("order",
           "Validation: The Maximum number of [tag] elements allowed in this collection is 2"),
       IgnoreCounts, kOk},
      {"too few in a collection", [] { return CSmartPtr<CXmlObjectBase>(new CDrawing()); },
       Out("drawing",
           "Validation: The Minimum number of [more] elements allowed in this collection is 1"),
       IgnoreCounts, kOk},
      // A choice collection member makes no count check of its own; a typed primitive
      // collection checks its count when it writes itself.
      {"too many in a choice collection", With<CPicks>([](CPicks& p) {
         for (int i = 0; i < 3; ++i) p.s->Add(Circle("s", i).get());
       }),
       kOk, IgnoreCounts, kOk},
      {"too many in a typed choice collection", With<CPicks>([](CPicks& p) {
         for (int i = 0; i < 3; ++i) p.n->Add(i);
       }),
       Out("picks",
           "Validation: The Maximum number of [n] elements allowed in this collection is 2"),
       IgnoreCounts, kOk},
      {"choice with no branch", [] { return CSmartPtr<CXmlObjectBase>(new CPicks()); },
       Out("picks", kNoBranch), IgnoreMissingChoice, kOk},
      // A choice class written as the branch of another choice may have no branch set; as the
      // member of a sequence it may not.
      {"empty choice in a choice", With<CPick>([](CPick& p) { p.picks = new CPicks(); }), kOk,
       IgnoreMissingChoice, kOk},
      {"empty choice in a sequence",
       [] {
         CSmartPtr<CXmlObjectBase> drawing = FullDrawing();
         static_cast<CDrawing*>(drawing.get())->picks = new CPicks();
         return drawing;
       },
       Out("drawing", Out("picks", kNoBranch)), IgnoreMissingChoice, kOk},
      // A choice class written as the branch of another choice may have no branch set; as the
      // member of a sequence it may not.
      {"empty choice in a choice", With<CPick>([](CPick& p) { p.picks = new CPicks(); }), kOk,
       IgnoreMissingChoice, kOk},
      {"empty choice in a sequence",
       [] {
         CSmartPtr<CXmlObjectBase> drawing = FullDrawing();
         static_cast<CDrawing*>(drawing.get())->picks = new CPicks();
         return drawing;
       },
       Out("drawing", Out("picks", kNoBranch)), IgnoreMissingChoice, kOk},
      {"choice of optional branches with none",
       [] { return CSmartPtr<CXmlObjectBase>(new CPick()); }, kOk, IgnoreMissingChoice, kOk},
  };
  for (const BadObject& c : cases) {
    SCOPED_TRACE(c.name);
    CSmartPtr<CXmlObjectBase> object = c.make();
    EXPECT_EQ(ChainOf([&] { Write(object); }), c.failure);
    Context context;
    c.ignore(context);
    EXPECT_EQ(ChainOf([&] { Write(object, context); }),
              c.failureIgnored == kSame ? c.failure : c.failureIgnored);
  }
}

TEST(GeneratedClassWriting, ChoiceWritesOnlyItsFirstSetBranch) {
  CSmartPtr<CPick> pick = new CPick();
  pick->shape = Circle("shape", 1).get();
  pick->color = 1;
  pick->num = 4;
  EXPECT_EQ(Write(pick), R"(<AA:pick xmlns:AA="urn:t"><AA:num>4</AA:num></AA:pick>)");
  pick->num.reset();
  EXPECT_EQ(Write(pick), R"(<AA:pick xmlns:AA="urn:t"><AA:color>green</AA:color></AA:pick>)");
}

TEST(GeneratedClassWriting, OptionalAttributesEqualToTheirDefaultAreLeftOutOnlyWhenAsked) {
  CSmartPtr<COrder> order = MinimalOrder();
  order->status = 0;  // "open", the default
  order->note = "none";
  const std::string body =
      R"(<AA:name>n</AA:name><AA:color>red</AA:color><AA:ship><AA:street>s</AA:street></AA:ship></AA:order>)";
  EXPECT_EQ(Write(order), R"(<AA:order xmlns:AA="urn:t" id="1" status="open" note="none">)" + body);
  Context context;
  context.SetNoOptionalAttributeDefaultOutput(true);
  EXPECT_EQ(Write(order, context), R"(<AA:order xmlns:AA="urn:t" id="1">)" + body);
  order->status = 1;
  EXPECT_EQ(Write(order, context), R"(<AA:order xmlns:AA="urn:t" id="1" status="closed">)" + body);
}

TEST(GeneratedClassWriting, RootOptionsGoOnTheRootElementOnly) {
  Context context;
  context.GetProcessingInstructions().push_back("<?keep going?>");
  context.GetNamespaceAliases().Add("x", "urn:x");
  context.SetDefaultNamespaceURI("urn:d");
  context.GetAdditionalRootAttributes()->Add("urn:x", "1", "extra");
  context.SetInLineSchema("<s/>");
  const std::string out = Write(MinimalOrder(), context);
  EXPECT_EQ(out.rfind("<?keep going?>", 0), 0u) << out;
  // The schema text goes inside the root element, before the children: the document stays
  // well-formed.
  CXmlDocument document;
  ASSERT_EQ(ChainOf([&] { document.LoadXml(out.c_str()); }), kOk) << out;
  CXmlElement* root = document.GetDocumentElement();
  std::string rootAttributes;
  for (const CXmlAttribute* a : root->GetAttributes())
    rootAttributes += " {" + a->GetNamespaceURI() + "}" + a->GetLocalName() + "=" + a->GetValue();
  EXPECT_EQ(rootAttributes, " {urn:x}extra=1 {}id=1");
  CXmlElement* schema = root->GetFirstElement();
  ASSERT_NE(schema, nullptr);
  EXPECT_EQ(schema->GetNamespaceURI() + " " + schema->GetLocalName(), "urn:d s");
  EXPECT_EQ(schema->GetNextSiblingElement()->GetLocalName(), "name");
  EXPECT_NE(out.find("<AA:ship><AA:street>"), std::string::npos) << out;
}

TEST(GeneratedClassWriting, AnObjectKeepsTheElementNameItWasReadUnder) {
  CSmartPtr<COrder> order =
      Read<COrder>("<purchase xmlns='urn:t' id='1'>" + kOrderMin + "</purchase>");
  EXPECT_EQ(order->GetElementName(), "purchase");
  EXPECT_EQ(
      Write(order),
      R"(<AA:purchase xmlns:AA="urn:t" id="1"><AA:name>n</AA:name><AA:color>red</AA:color><AA:ship><AA:street>s</AA:street></AA:ship></AA:purchase>)");
}

}  // namespace
