#include "OvXmlLib6/core/SmartPtr.h"
#include "OvXmlLib6/metadata/Element.h"
#include "core/ObjectMemory.h"

#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

using namespace OvXmlLib6;

namespace {

std::string ManyOrders(int count) {
  std::string xml = "<orders xmlns='urn:o'>";
  for (int i = 0; i < count; ++i) {
    xml += "<order id='" + std::to_string(i) + "'><item sku='a'>" + std::to_string(i) +
           "</item></order>";
  }
  return xml + "</orders>";
}

std::size_t CountElements(CElement* root) {
  std::size_t count = 0;
  std::vector<CElement*> pending{root};
  while (!pending.empty()) {
    CElement* element = pending.back();
    pending.pop_back();
    ++count;
    for (CAttribute* attribute : *element->GetAttributes()) count += attribute->GetValue().empty();
    for (CElement* child : *element->GetChildElements()) pending.push_back(child);
  }
  return count;
}

}  // namespace

// Objects are cut from blocks that the making thread fills; they may die on any thread, before
// or after the thread that made them has ended. Run under ThreadSanitizer too.
TEST(CPooledObjectThreads, ObjectsOutliveTheirThreadAndDieAnywhere) {
  const std::string xml = ManyOrders(3000);
  std::vector<CSmartPtr<CElement>> made(4);
  std::vector<std::thread> makers;
  for (auto& slot : made) {
    makers.emplace_back([&slot, &xml] {
      CSmartPtr<CElement> root = new CElement("orders");
      root->FromXml(xml.c_str());
      CountElements(root);  // the collections are made on this thread too
      slot = root;
    });
  }
  for (std::thread& maker : makers) maker.join();  // the makers have ended
  // Half are released here, half on other threads, while this thread makes new objects.
  std::vector<std::thread> releasers;
  for (std::size_t i = 0; i < made.size(); i += 2) {
    releasers.emplace_back([&made, i] {
      EXPECT_EQ(CountElements(made[i]), 1u + 3000 * 2);
      made[i] = nullptr;
    });
  }
  for (std::size_t i = 1; i < made.size(); i += 2) {
    CSmartPtr<CElement> fresh = new CElement("fresh");
    fresh->FromXml("<a><b/></a>");
    EXPECT_EQ(CountElements(made[i]), 1u + 3000 * 2);
    made[i] = nullptr;
  }
  for (std::thread& releaser : releasers) releaser.join();
}

TEST(CPooledObject, KeepsLargeAndOddSizesApart) {
  // Sizes past the pooled limit, and sizes that share no alignment, come back intact.
  std::vector<std::pair<unsigned char*, std::size_t>> blocks;
  for (std::size_t size : {1u, 7u, 24u, 511u, 512u, 513u, 4096u, 70000u}) {
    for (int copy = 0; copy < 50; ++copy) {
      auto* bytes = static_cast<unsigned char*>(detail::AllocateSmall(size));
      for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<unsigned char>(size + copy);
      blocks.emplace_back(bytes, size);
    }
  }
  for (std::size_t i = 0; i < blocks.size(); ++i) {
    const auto [bytes, size] = blocks[i];
    const auto expected = static_cast<unsigned char>(size + i % 50);
    for (std::size_t j = 0; j < size; ++j) ASSERT_EQ(bytes[j], expected) << size;
    detail::FreeSmall(bytes, size);
  }
}
