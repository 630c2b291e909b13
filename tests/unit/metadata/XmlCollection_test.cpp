#include "OvXmlLib6/metadata/XmlCollection.h"

#include "CollectionTestSupport.h"
#include "OvXmlLib6/metadata/TypedCollection.h"
#include "OvXmlLib6/types/Variant.h"
#include "unit/TestSupport.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace OvXmlLib6;
using test::ExpectThrowMessage;
using namespace ovxml_test;

int ovxml_test::CItem::s_live = 0;

namespace {

// The protected item operations, made reachable.
class CList : public CTypedCollection<CItem> {
 public:
  CList(int minOccurs = 0, int maxOccurs = -1)
      : CTypedCollection("item", "", minOccurs, maxOccurs) {}
  using CXmlCollection::AddAfterItem;
  using CXmlCollection::AddBeforeItem;
  using CXmlCollection::AddItemAt;
  using CXmlCollection::AppendItem;
  using CXmlCollection::GetNodeForItem;
  using CXmlCollection::PrependItem;
  using CXmlCollectionBase::GetTargetNamespace;

  std::string Texts() const {
    std::string all;
    for (CItem* item : *this) all += item->Text();
    return all;
  }
};

}  // namespace

// The events, refusals and the range checks of every kind of collection are in
// CollectionEvents_test.cpp; these are the positions the object list's insertions choose.
TEST(CXmlCollection, InsertionsKeepOrder) {
  CSmartPtr<CList> list = new CList();
  CSmartPtr<CItem> b = new CItem("b");
  list->AppendItem(b);
  list->PrependItem(new CItem("a"));
  list->AddItemAt(2, new CItem("d"));  // index == count appends
  list->AddItemAt(2, new CItem("c"));
  list->AddAfterItem(nullptr, new CItem("0"));   // null: at the start
  list->AddBeforeItem(nullptr, new CItem("z"));  // null: at the end
  list->AddAfterItem(b, new CItem("+"));
  list->AddBeforeItem(b, new CItem("-"));
  // A different wrapper object that stands for the same base is the same item.
  list->AddAfterItem(CSmartPtr<CItem>(new CItem("wrapper", b)), new CItem("="));
  EXPECT_EQ(list->Texts(), "0a-b=+cdz");
  EXPECT_EQ(list->GetCount(), 9);
  EXPECT_EQ(list->Item(3)->Text(), "b");
  list->Remove(3);
  EXPECT_EQ(list->Texts(), "0a-=+cdz");
  EXPECT_EQ(MessageOf([&] { list->AddItemAt(-1, new CItem("x")); }), "Index out of range");
  EXPECT_EQ(MessageOf([&] { list->GetTargetNamespace(); }),
            "CXmlCollectionBase::GetTargetNamespace Should not be used from within a Collection "
            "(program logic error)");
}

TEST(CXmlCollection, ReferencesAreSharedAndReleasedWithTheList) {
  const int before = CItem::s_live;
  CSmartPtr<CItem> kept = new CItem("kept");
  {
    CSmartPtr<CList> list = new CList();
    list->Add(kept);
    list->Add(new CItem("owned"));
    list->Clear();
    EXPECT_EQ(list->GetCount(), 0);
    EXPECT_EQ(CItem::s_live, before + 1);
    list->Add(new CItem("owned"));
  }
  EXPECT_EQ(CItem::s_live, before + 1);
  EXPECT_EQ(kept->Text(), "kept");
}

TEST(CXmlCollection, ValidateCountChecksMaximumFirstUnlessIgnored) {
  CXmlSerializationContext context;
  CSmartPtr<CList> unbounded = new CList(2, -1);
  unbounded->Add(new CItem("a"));
  EXPECT_EQ(MessageOf([&] { unbounded->ValidateCount(context); }),
            "The Minimum number of [item] elements allowed in this collection is 2");
  for (int i = 0; i < 50; ++i) unbounded->Add(new CItem("a"));
  EXPECT_NO_THROW(unbounded->ValidateCount(context));

  CSmartPtr<CList> bounded = new CList(5, 1);  // both limits broken: the maximum is reported
  bounded->Add(new CItem("a"));
  bounded->Add(new CItem("b"));
  ExpectThrowMessage<COvValidationException>(
      [&] { bounded->ValidateCount(context); },
      "The Maximum number of [item] elements allowed in this collection is 1");
  context.SetIgnoreInvalidCollectionCounts(true);
  EXPECT_NO_THROW(bounded->ValidateCount(context));
}

namespace {

// Removes itself, or another listener, while an event is being delivered.
class CSelfRemover : public IEventSink {
 public:
  CSelfRemover(CXmlCollectionBase* list, IEventSink* victim) : m_list(list), m_victim(victim) {}
  void OnEvent(CXmlObjectBase*, MsgType, void*) override {
    ++calls;
    m_list->RemoveEventListener(m_victim != nullptr ? m_victim : this);
  }
  int calls = 0;

 private:
  CXmlCollectionBase* m_list;
  IEventSink* m_victim;
};

}  // namespace

TEST(CXmlCollection, ListenersMayRemoveListenersDuringAnEvent) {
  CSmartPtr<CList> list = new CList();
  CRecorder later;
  CSelfRemover self(list, nullptr);
  CSelfRemover killer(list, &later);
  list->AddEventListener(&self);
  list->AddEventListener(&killer);
  list->AddEventListener(&later);
  list->Add(new CItem("a"));
  EXPECT_EQ(self.calls, 1);           // gone after its first event
  EXPECT_EQ(killer.calls, 3);         // add, add complete, change
  EXPECT_TRUE(later.events.empty());  // removed before its turn came
  list->RemoveEventListener(&killer);
  list->Add(new CItem("b"));
  EXPECT_EQ(killer.calls, 3);
}

TEST(CXmlCollection, ReadsMatchingElementsAndWritesThemInOrder) {
  CSmartPtr<CList> list = new CList();
  EXPECT_EQ(CAccess::Read(list, "<r><item>1</item><item>2</item><other/><item>3</item></r>"),
            "other");
  EXPECT_EQ(list->Texts(), "12");
  EXPECT_EQ(CAccess::Write(list), "<item>1</item><item>2</item>");
  CSmartPtr<CItem> added = list->Add();
  EXPECT_EQ(list->GetCount(), 3);
  EXPECT_EQ(list->Item(2), added);
}

TEST(CXmlCollection, DestroyingAVeryLongChainOfNestedListsDoesNotRecurse) {
  // Each item holds the next list, 100,000 deep: the release of one level must not run inside
  // the destructor of the level above.
  struct CNested : public CItem {
    CSmartPtr<CList> inner = new CList();
  };
  const int before = CItem::s_live;
  CSmartPtr<CList> top = new CList();
  CList* level = top;
  for (int i = 0; i < 100000; ++i) {
    CNested* nested = new CNested();
    level->Add(nested);
    level = nested->inner;
  }
  top = nullptr;
  EXPECT_EQ(CItem::s_live, before);
}

TEST(OvVariant, HoldsOneReferenceToAnObjectOrCollection) {
  CSmartPtr<CItem> item = new CItem("x");
  CSmartPtr<CList> list = new CList();
  {
    OvVariant v;
    v.SetXmlObject(item);
    EXPECT_EQ(v.GetTypeAsEnum(), 27);
    EXPECT_EQ(v.GetXmlObject(), item);
    EXPECT_EQ(v.GetXmlCollection(), nullptr);
    OvVariant copy(v);
    EXPECT_EQ(item->AddRef(), 4);  // ours, the variant's, the copy's, and this one
    item->Release();
    v.SetI4(5);  // gives the reference back
    EXPECT_EQ(item->AddRef(), 3);
    item->Release();

    v.SetXmlCollection(list);
    EXPECT_EQ(v.GetTypeAsEnum(), 28);
    EXPECT_EQ(v.GetXmlCollection(), list);
    EXPECT_EQ(v.GetXmlObject(), list);
    EXPECT_EQ(MessageOf([&] { v.ToString(nullptr); }), "Invalid Type 28 to convert to string");
  }
  EXPECT_EQ(item->AddRef(), 2);
  item->Release();
  EXPECT_EQ(list->AddRef(), 2);
  list->Release();
}
