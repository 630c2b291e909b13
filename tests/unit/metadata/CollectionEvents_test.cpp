// One contract for every kind of collection: each kind runs the same script of insertions and
// removals, and after each step the events it sent (with what their data points to), the failure
// and the values left must be the line of its contract.
#include "CollectionTestSupport.h"
#include "OvXmlLib6/metadata/Attribute.h"
#include "OvXmlLib6/metadata/DateTimeCollections.h"
#include "OvXmlLib6/metadata/Element.h"
#include "OvXmlLib6/metadata/TypedCollection.h"
#include "OvXmlLib6/metadata/TypedCollections.h"
#include "OvXmlLib6/metadata/XmlCollection.h"
#include "OvXmlLib6/types/Conversions.h"

#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

using namespace OvXmlLib6;
using namespace ovxml_test;

namespace {

// The values a script adds, by the names the contracts use: a, b and c are accepted; x is
// refused by the collection's own check (facets, namespace restriction, null item); w is a date
// of another kind.
enum Sample { A, B, C, X, W };

// One collection under test, driven through its own public (or, for the object list, protected)
// operations.
class CKind {
 public:
  virtual ~CKind() = default;
  virtual CXmlCollectionBase* Collection() = 0;
  virtual void Append(Sample sample) = 0;
  virtual void InsertAt(int index, Sample sample) = 0;
  // Only for the range check of the lookup.
  virtual void Item(int index) = 0;
  // The text of the value or item an add event's data points to, with "*" when that is the
  // very value or item stored in the collection.
  virtual std::string Describe(void* data) = 0;
  // The texts of the values in order, in brackets.
  virtual std::string Values() = 0;

  // The texts the contracts' a, b, c, x and w stand for; no w for kinds other than dates.
  std::vector<std::string> texts;
};

// A typed collection, with samples parsed from the texts.
template <class Col, class Value>
class CTypedKind : public CKind {
 public:
  using Parse = Value (*)(const std::string&);
  using Print = std::string (*)(const Value&);

  CTypedKind(Col* col, std::vector<std::string> sampleTexts, Parse parse, Print print,
             Parse parseOtherKind = nullptr)
      : m_col(col), m_print(print) {
    texts = std::move(sampleTexts);
    for (std::size_t i = 0; i < texts.size(); ++i) {
      m_samples.push_back((i == W ? parseOtherKind : parse)(texts[i]));
    }
    // The facets admit a, b and c and refuse x.
    for (int i = A; i <= C; ++i) col->GetRestrictions().AddEnumeration(texts[i].c_str());
  }
  CXmlCollectionBase* Collection() override { return m_col; }
  void Append(Sample sample) override { m_col->Add(m_samples[sample]); }
  void InsertAt(int index, Sample sample) override { m_col->AddAt(index, m_samples[sample]); }
  void Item(int index) override { m_col->Item(index); }
  std::string Describe(void* data) override {
    const Value* value = static_cast<const Value*>(data);
    for (const Value& stored : *m_col) {
      if (&stored == value) return m_print(*value) + "*";
    }
    return m_print(*value);
  }
  std::string Values() override {
    std::string all;
    for (const Value& value : *m_col) all += (all.empty() ? "" : " ") + m_print(value);
    return "[" + all + "]";
  }

 private:
  CSmartPtr<Col> m_col;
  Print m_print;
  std::vector<Value> m_samples;
};

// The object lists; a sample is a new item of that name (x is the null item unless the row
// makes one that the restriction refuses).
class CObjectKind : public CKind {
 public:
  CXmlCollectionBase* Collection() override { return list; }
  void Append(Sample sample) override { append(make(sample)); }
  void InsertAt(int index, Sample sample) override { insertAt(index, make(sample)); }
  void Item(int index) override { item(index); }
  std::string Describe(void* data) override {
    CXmlObjectBase* described = static_cast<CXmlObjectBase*>(data);
    for (const CXmlCollection::CNode* n = list->GetHead(); n != nullptr; n = n->GetNext()) {
      if (n->GetItem() == described) return name(described) + "*";
    }
    return name(described);
  }
  std::string Values() override {
    std::string all;
    for (const CXmlCollection::CNode* n = list->GetHead(); n != nullptr; n = n->GetNext()) {
      all += (all.empty() ? "" : " ") + name(n->GetItem());
    }
    return "[" + all + "]";
  }

  CSmartPtr<CXmlCollection> list;
  std::function<CXmlObjectBase*(Sample)> make;
  std::function<void(CXmlObjectBase*)> append;
  std::function<void(int, CXmlObjectBase*)> insertAt;
  std::function<void(int)> item;
  std::function<std::string(CXmlObjectBase*)> name;
};

// CXmlCollection itself, its protected operations made reachable.
class CObjectList : public CXmlCollection {
 public:
  CObjectList() : CXmlCollection("item", "", 0, -1) {}
  using CXmlCollection::AddItemAt;
  using CXmlCollection::AppendItem;
  using CXmlCollection::GetNodeAtIndex;

 protected:
  CXmlElement* FromXml_Int(CXmlElement*, CXmlElement* current, const CXmlSerializationContext&,
                           bool) override {
    return current;
  }
};

const CWhitespaceUtils::WhitespaceRule kCollapse = CWhitespaceUtils::WhitespaceRule_Collapse;

template <class Traits>
Traits TraitsOf(const detail::CPrimitiveCol<Traits>*);

template <class Col>
std::unique_ptr<CKind> Primitive(std::vector<std::string> texts) {
  using Traits = decltype(TraitsOf(static_cast<Col*>(nullptr)));
  using Value = typename Traits::Value;
  return std::make_unique<CTypedKind<Col, Value>>(
      new Col("v", "", 0, -1), std::move(texts),
      [](const std::string& text) { return Traits::FromString(text, kCollapse); },
      [](const Value& value) { return Traits::ToString(value, nullptr); });
}

// w is parsed as another kind; the five kinds print through one routine, each in its own form.
template <class Col, CDateTime (*Parse)(const std::string&, CWhitespaceUtils::WhitespaceRule),
          CDateTime (*ParseOtherKind)(const std::string&, CWhitespaceUtils::WhitespaceRule)>
std::unique_ptr<CKind> DateTime(std::vector<std::string> texts) {
  return std::make_unique<CTypedKind<Col, CDateTime>>(
      new Col("v", "", 0, -1), std::move(texts),
      [](const std::string& text) { return Parse(text, kCollapse); },
      &CConversions::datetimeToString,
      [](const std::string& text) { return ParseOtherKind(text, kCollapse); });
}

// An object list: the items are made with `make` (x is the null item unless `make` makes one
// that the collection refuses) and named with `name`.
template <class Item>
std::unique_ptr<CObjectKind> Objects(CXmlCollection* list, std::vector<std::string> texts,
                                     Item* (*make)(const std::string& text),
                                     std::string (*name)(Item*)) {
  auto kind = std::make_unique<CObjectKind>();
  kind->list = list;
  kind->texts = std::move(texts);
  kind->make = [texts = kind->texts, make](Sample s) { return make(texts[s]); };
  kind->name = [name](CXmlObjectBase* item) { return name(static_cast<Item*>(item)); };
  return kind;
}

CItem* MakeItem(const std::string& text) { return text == "x" ? nullptr : new CItem(text); }
std::string ItemName(CItem* item) { return item->Text(); }

std::unique_ptr<CKind> ObjectList(std::vector<std::string> texts) {
  CObjectList* list = new CObjectList();
  auto kind = Objects(list, std::move(texts), MakeItem, ItemName);
  kind->append = [list](CXmlObjectBase* item) { list->AppendItem(item); };
  kind->insertAt = [list](int index, CXmlObjectBase* item) { list->AddItemAt(index, item); };
  kind->item = [list](int index) { list->GetNodeAtIndex(index); };
  return kind;
}

std::unique_ptr<CKind> TypedObjectList(std::vector<std::string> texts) {
  auto* list = new CTypedCollection<CItem>("item", "", 0, -1);
  auto kind = Objects(list, std::move(texts), MakeItem, ItemName);
  kind->append = [list](CXmlObjectBase* item) { list->Add(static_cast<CItem*>(item)); };
  kind->insertAt = [list](int index, CXmlObjectBase* item) {
    list->AddAt(index, static_cast<CItem*>(item));
  };
  kind->item = [list](int index) { list->Item(index); };
  return kind;
}

// The wildcard collections admit the namespace urn:ok; x is in another one. They have no
// insertion at an index: inside the list it is an insertion before the item at the index, past
// the end an insertion after an item not in the list.
template <class Col, class Item>
std::unique_ptr<CKind> Wildcards(Col* list, std::vector<std::string> texts,
                                 Item* (*make)(const std::string& text)) {
  auto kind =
      Objects<Item>(list, std::move(texts), make, [](Item* item) { return item->GetName(); });
  kind->append = [list](CXmlObjectBase* item) { list->Add(static_cast<Item*>(item)); };
  kind->insertAt = [list, make](int index, CXmlObjectBase* item) {
    if (index == list->GetCount()) {
      list->Add(static_cast<Item*>(item));
    } else if (index >= 0 && index < list->GetCount()) {
      list->AddBefore(list->Item(index), static_cast<Item*>(item));
    } else {
      CSmartPtr<Item> stranger = make("stranger");
      list->AddAfter(stranger, static_cast<Item*>(item));
    }
  };
  kind->item = [list](int index) { list->Item(index); };
  return kind;
}

const char* WildcardNamespace(const std::string& text) {
  return text == "x" ? "urn:bad" : "urn:ok";
}

std::unique_ptr<CKind> ElementCol(std::vector<std::string> texts) {
  return Wildcards<CElementCol, CElement>(
      new CElementCol("any", "urn:ok", "", 0, -1), std::move(texts),
      [](const std::string& text) { return new CElement(text.c_str(), WildcardNamespace(text)); });
}

std::unique_ptr<CKind> AttributeCol(std::vector<std::string> texts) {
  return Wildcards<CAttributeCol, CAttribute>(
      new CAttributeCol("any", "urn:ok", ""), std::move(texts), [](const std::string& text) {
        return new CAttribute(WildcardNamespace(text), "", text.c_str());
      });
}

// The contracts: which checks come before the add event, and what the remove events carry.
enum Contract { kTyped, kDateTime, kObjectList, kWildcards, kContracts };
const char* const kContractNames[kContracts] = {
    "typed: add event, index check, facet check",
    "date-time: kind and facet checks, then add event, index check",
    "object list: index check, add event; removals send -1",
    // A bad position is a reference item not in the list, looked up after the add event.
    "wildcards: namespace check, add event, lookup; removals send -1",
};

// The script, run with the recorder listening. Each step expects, by contract (a column left out
// is as the first), the events and then "!" and the failure ("refused" and "kind" for the kind's
// refusals of x and w, "listener" for the listener's; "n/a": the step does not apply), and for
// all kinds the values left.
struct Step {
  const char* what;
  std::function<void(CKind&, CRecorder&)> run;
  const char* events[kContracts];
  const char* values;
};

const Step kSteps[] = {
    {"append a",
     [](CKind& k, CRecorder&) { k.Append(A); },
     {"add a; addComplete a*; change"},
     "[a]"},
    {"insert b at 0",
     [](CKind& k, CRecorder&) { k.InsertAt(0, B); },
     {"add b; addComplete b*; change"},
     "[b a]"},
    {"insert c at a bad index",
     [](CKind& k, CRecorder&) { k.InsertAt(3, C); },
     {"add c; !Index out of range", "add c; !Index out of range", "!Index out of range",
      "add c; !The object was not found in the collection"},
     "[b a]"},
    {"insert x, a refused value, at a bad index: which check comes first",
     [](CKind& k, CRecorder&) { k.InsertAt(3, X); },
     {"add x; !Index out of range", "!refused", "!refused", "!refused"},
     "[b a]"},
    {"insert x at 1: is the value checked before or after the add event",
     [](CKind& k, CRecorder&) { k.InsertAt(1, X); },
     {"add x; !refused", "!refused", "!refused", "!refused"},
     "[b a]"},
    {"insert w, a date of another kind",
     [](CKind& k, CRecorder&) { k.InsertAt(1, W); },
     {"n/a", "!kind", "n/a", "n/a"},
     "[b a]"},
    {"insert c while a listener refuses it",
     [](CKind& k, CRecorder& recorder) {
       recorder.refuseAdds = true;
       k.InsertAt(1, C);
     },
     {"add c; !listener"},
     "[b a]"},
    {"remove at a bad index",
     [](CKind& k, CRecorder&) { k.Collection()->Remove(5); },
     {"remove 5; !Index 5 is out of range, use 0 - 1",
      "remove 5; !Index 5 is out of range, use 0 - 1", "!Index 5 is out of range, use 0 - 1",
      "!Index 5 is out of range, use 0 - 1"},
     "[b a]"},
    {"remove 1",
     [](CKind& k, CRecorder&) { k.Collection()->Remove(1); },
     {"remove 1; removeComplete 1; change", "remove 1; removeComplete 1; change",
      "remove -1; removeComplete -1; change", "remove -1; removeComplete -1; change"},
     "[b]"},
    {"append a again",
     [](CKind& k, CRecorder&) { k.Append(A); },
     {"add a; addComplete a*; change"},
     "[b a]"},
    {"clear",
     [](CKind& k, CRecorder&) { k.Collection()->Clear(); },
     {"remove 0; removeComplete 0; change; remove 0; removeComplete 0; change",
      "remove 0; removeComplete 0; change; remove 0; removeComplete 0; change",
      "remove -1; removeComplete -1; change; remove -1; removeComplete -1; change",
      "remove -1; removeComplete -1; change; remove -1; removeComplete -1; change"},
     "[]"},
    {"item 0 of the empty collection",
     [](CKind& k, CRecorder&) { k.Item(0); },
     {"!Index 0 is out of range, use 0 - -1"},
     "[]"},
};

// The kinds: their contract, how to make one over the samples' texts (a, b, c, x and, for the
// dates, w) and the messages with which x and w are refused.
struct KindRow {
  const char* name;
  Contract contract;
  std::unique_ptr<CKind> (*make)(std::vector<std::string> texts);
  std::vector<std::string> texts;
  const char* refusal;
  const char* kindRefusal = "";
};

const char* const kNull = "A NULL item cannot be added to a collection";
const char* const kBadNamespace =
    "Invalid namespace [urn:bad]. The namespace must be one of [urn:ok] where the target "
    "namespace is []";

const KindRow kKinds[] = {
    {"CXmlCollection", kObjectList, ObjectList, {"a", "b", "c", "x"}, kNull},
    {"CTypedCollection<T>", kObjectList, TypedObjectList, {"a", "b", "c", "x"}, kNull},
    {"CElementCol", kWildcards, ElementCol, {"a", "b", "c", "x"}, kBadNamespace},
    {"CAttributeCol", kWildcards, AttributeCol, {"a", "b", "c", "x"}, kBadNamespace},
    {"ChexBinaryCol",
     kTyped,
     Primitive<ChexBinaryCol>,
     {"0A", "0B", "0C", "FF"},
     "Invalid Value for v [FF]"},
    {"Cbase64BinaryCol",
     kTyped,
     Primitive<Cbase64BinaryCol>,
     {"AQ==", "Ag==", "Aw==", "BA=="},
     "Invalid Value for v [BA==]"},
    {"Ci1Col", kTyped, Primitive<Ci1Col>, {"1", "2", "3", "-9"}, "Invalid Value for v [-9]"},
    {"Ci2Col", kTyped, Primitive<Ci2Col>, {"1", "2", "3", "-9"}, "Invalid Value for v [-9]"},
    {"Ci4Col", kTyped, Primitive<Ci4Col>, {"1", "2", "3", "-9"}, "Invalid Value for v [-9]"},
    {"Ci8Col", kTyped, Primitive<Ci8Col>, {"1", "2", "3", "-9"}, "Invalid Value for v [-9]"},
    {"Cui1Col", kTyped, Primitive<Cui1Col>, {"1", "2", "3", "9"}, "Invalid Value for v [9]"},
    {"Cui2Col", kTyped, Primitive<Cui2Col>, {"1", "2", "3", "9"}, "Invalid Value for v [9]"},
    {"Cui4Col", kTyped, Primitive<Cui4Col>, {"1", "2", "3", "9"}, "Invalid Value for v [9]"},
    {"Cui8Col", kTyped, Primitive<Cui8Col>, {"1", "2", "3", "9"}, "Invalid Value for v [9]"},
    {"Cr4Col",
     kTyped,
     Primitive<Cr4Col>,
     {"1.5", "2.5", "3.5", "9.5"},
     "Invalid Value for v [9.500000]"},
    {"Cr8Col",
     kTyped,
     Primitive<Cr8Col>,
     {"1.5", "2.5", "3.5", "9.5"},
     "Invalid Value for v [9.500000]"},
    {"CdurationCol",
     kTyped,
     Primitive<CdurationCol>,
     {"P1D", "P2D", "P3D", "P9D"},
     "Invalid Value for v [P9D]"},
    {"CyearCol",
     kTyped,
     Primitive<CyearCol>,
     {"2001", "2002", "2003", "2009"},
     "Invalid Value for v [2009]"},
    {"CmonthCol",
     kTyped,
     Primitive<CmonthCol>,
     {"--01", "--02", "--03", "--09"},
     "Invalid Value for v [9]"},
    {"CdayCol",
     kTyped,
     Primitive<CdayCol>,
     {"---01", "---02", "---03", "---09"},
     "Invalid Value for v [9]"},
    {"CstringCol",
     kTyped,
     Primitive<CstringCol>,
     {"a", "b", "c", "x y"},
     "Invalid Value for v [x y]"},
    // A boolean has two values: a, b and c are all true.
    {"CbooleanCol",
     kTyped,
     Primitive<CbooleanCol>,
     {"true", "true", "true", "false"},
     "Invalid Value for v [false]"},
    {"CdecimalCol",
     kTyped,
     Primitive<CdecimalCol>,
     {"1.5", "2.5", "3.5", "9.5"},
     "Invalid Value for v [9.5]"},
    {"CintegerCol",
     kTyped,
     Primitive<CintegerCol>,
     {"1", "2", "3", "123456789012345678901"},
     "Invalid Value for v [123456789012345678901]"},
    {"CdateCol",
     kDateTime,
     DateTime<CdateCol, CConversions::dateFromString, CConversions::datetimeFromString>,
     {"2024-01-01", "2024-01-02", "2024-01-03", "2024-01-09", "2024-01-02T03:04:05"},
     "Invalid Value for v [2024-01-09]",
     "Dates added to this collection must be of type dt_date"},
    {"CdatetimeCol",
     kDateTime,
     DateTime<CdatetimeCol, CConversions::datetimeFromString, CConversions::dateFromString>,
     {"2024-01-01T10:00:00Z", "2024-01-02T10:00:00Z", "2024-01-03T10:00:00Z",
      "2024-01-09T10:00:00Z", "2024-01-02"},
     "Invalid Value for v [2024-01-09T10:00:00Z]",
     "Dates added to this collection must be of type dt_dateTime"},
    {"CtimeCol",
     kDateTime,
     DateTime<CtimeCol, CConversions::timeFromString, CConversions::dateFromString>,
     {"10:00:01", "10:00:02", "10:00:03", "10:00:09", "2024-01-02"},
     "Invalid Value for v [10:00:09]",
     "Dates added to this collection must be of type dt_time"},
    {"CmonthDayCol",
     kDateTime,
     DateTime<CmonthDayCol, CConversions::monthDayFromString, CConversions::dateFromString>,
     {"--01-01", "--01-02", "--01-03", "--01-09", "2024-01-02"},
     "Invalid Value for v [--01-09]",
     "Dates added to this collection must be of type dt_gMonthDay"},
    {"CyearMonthCol",
     kDateTime,
     DateTime<CyearMonthCol, CConversions::yearMonthFromString, CConversions::dateFromString>,
     {"2024-01", "2024-02", "2024-03", "2024-09", "2024-01-02"},
     "Invalid Value for v [2024-09]",
     "Dates added to this collection must be of type dt_gYearMonth"},
};

// The expected line with the kind's texts for a, b, c, x and w.
std::string Expected(const std::string& line, const CKind& kind) {
  std::istringstream words(line);
  std::string result;
  for (std::string word; words >> word;) {
    const std::size_t begin = word.find_first_not_of('[');
    const std::size_t end = word.find_first_of("*;]", begin);
    const std::string core = word.substr(begin, end == std::string::npos ? end : end - begin);
    const std::size_t sample = std::string("abcxw").find(core);
    if (core.size() == 1 && sample != std::string::npos && sample < kind.texts.size()) {
      word.replace(begin, 1, kind.texts[sample]);
    }
    result += (result.empty() ? "" : " ") + word;
  }
  return result;
}

std::string Outcome(CKind& kind, const KindRow& row, const Step& step, CRecorder& recorder) {
  recorder.events.clear();
  recorder.refuseAdds = false;
  std::string failure;
  try {
    step.run(kind, recorder);
  } catch (const COvException& e) {
    const std::string& message = e.GetMessage();
    failure = message == row.refusal                           ? "refused"
              : message == row.kindRefusal && !message.empty() ? "kind"
              : message == "refused by a listener"             ? "listener"
                                                               : message;
  }
  std::string line;
  for (const std::string& event : recorder.events) line += (line.empty() ? "" : "; ") + event;
  if (!failure.empty()) line += (line.empty() ? "!" : "; !") + failure;
  return line + " " + kind.Values();
}

}  // namespace

TEST(Collections, EveryKindKeepsItsContractOfEventsChecksAndValues) {
  const int itemsBefore = CItem::s_live;
  for (const KindRow& row : kKinds) {
    SCOPED_TRACE(std::string(row.name) + ", " + kContractNames[row.contract]);
    std::unique_ptr<CKind> kind = row.make(row.texts);
    CRecorder recorder;
    recorder.describe = [&kind](void* data) { return kind->Describe(data); };
    kind->Collection()->AddEventListener(&recorder);
    for (const Step& step : kSteps) {
      const char* column = step.events[row.contract];
      const std::string events = column != nullptr ? column : step.events[kTyped];
      if (events == "n/a") continue;
      EXPECT_EQ(Outcome(*kind, row, step, recorder), Expected(events + " " + step.values, *kind))
          << step.what;
    }
    EXPECT_EQ(recorder.lastSource, kind->Collection());
    kind->Collection()->RemoveEventListener(&recorder);
  }
  EXPECT_EQ(CItem::s_live, itemsBefore);  // refused items were not leaked
}
