// XML Schema documents to the class model. The documents are parsed with the library's own tree
// (with the line of each element recorded, for messages), components are indexed by qualified
// name, and classes are built on demand from the global components in document order, so the
// model (and the output) depends only on the input.
#include "generate/SchemaReader.h"

#include "generate/SimpleTypes.h"

#include <OvXmlLib6.h>
#include <algorithm>
#include <climits>
#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <regex>
#include <set>
#include <utility>

namespace ovxml_generate {

using OvXmlLib6::CXmlAttribute;
using OvXmlLib6::CXmlDocument;
using OvXmlLib6::CXmlElement;

namespace {

const char kXsd[] = "http://www.w3.org/2001/XMLSchema";
const char kXmlNs[] = "http://www.w3.org/XML/1998/namespace";

struct CDoc {
  std::string path;
  std::unique_ptr<CXmlDocument> tree;
  CXmlElement* root = nullptr;
  std::string targetNamespace;
  bool chameleon = false;  // included without a target namespace: takes the includer's
  bool elementsQualified = false;
  bool attributesQualified = false;
  int output = 0;
};

// A global component: where it is declared.
struct CComponent {
  CDoc* doc = nullptr;
  CXmlElement* element = nullptr;
};

using CQName = std::pair<std::string, std::string>;  // namespace, local name

bool IsXsd(const CXmlElement* element, const char* localName) {
  return element->GetNamespaceURI() == kXsd && element->GetLocalName() == localName;
}

// The value of an unqualified attribute and whether it is there.
bool Attribute(const CXmlElement* element, const char* name, std::string* value) {
  for (const CXmlAttribute* attribute : element->GetAttributes()) {
    if (attribute->GetLocalName() == name && attribute->GetNamespaceURI().empty()) {
      if (value != nullptr) *value = attribute->GetValue();
      return true;
    }
  }
  return false;
}

std::string AttributeOr(const CXmlElement* element, const char* name,
                        const std::string& otherwise) {
  std::string value;
  return Attribute(element, name, &value) ? value : otherwise;
}

std::string Trim(const std::string& text) {
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  if (first == std::string::npos) return std::string();
  const std::size_t last = text.find_last_not_of(" \t\r\n");
  return text.substr(first, last - first + 1);
}

// A boolean attribute's value.
bool IsTrue(const std::string& text) {
  const std::string value = Trim(text);
  return value == "true" || value == "1";
}

// A count (occurrences, a length facet): decimal digits, blanks around them allowed, at most
// INT_MAX.
bool ParseCount(const std::string& text, int* value) {
  const std::string digits = Trim(text);
  if (digits.empty() || digits.size() > 10 ||
      digits.find_first_not_of("0123456789") != std::string::npos) {
    return false;
  }
  const long long parsed = std::stoll(digits);
  if (parsed > INT_MAX) return false;
  *value = static_cast<int>(parsed);
  return true;
}

std::string LowerFirst(std::string text) {
  if (!text.empty() && text[0] >= 'A' && text[0] <= 'Z') text[0] = static_cast<char>(text[0] + 32);
  return text;
}

std::string DirectoryOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

class CReader {
 public:
  explicit CReader(const CNaming& naming)
      : m_naming(naming), m_names(naming.reserved.begin(), naming.reserved.end()) {}

  CSchemaSet Read(const std::vector<std::string>& files) {
    // A schema named on the command line has its own output, whoever reaches it first.
    for (std::size_t i = 0; i < files.size(); ++i) {
      m_named.emplace(Canonical(files[i], nullptr, nullptr), static_cast<int>(i));
    }
    for (std::size_t i = 0; i < files.size(); ++i) {
      Load(files[i], static_cast<int>(i), nullptr, nullptr);
      CDoc* named = m_byPath[Canonical(files[i], nullptr, nullptr)];
      m_set.targetNamespaces.push_back(named->targetNamespace);
    }
    for (const auto& doc : m_docs) Index(*doc);
    for (const auto& doc : m_docs) BuildGlobals(*doc);
    for (const CPending& next : m_pending) Fill(*next.doc, next.complexType, next.model);
    Finish();
    return std::move(m_set);
  }

 private:
  // ---- Messages ----

  [[noreturn]] void Fail(const CDoc& doc, const CXmlElement* element,
                         const std::string& message) const {
    throw CSchemaError(doc.path, element ? doc.tree->GetElementLine(element) : 0,
                       message + " (" + Construct(element) + ")");
  }

  // The construct a message names: the element with its naming attributes.
  static std::string Construct(const CXmlElement* element) {
    if (element == nullptr) return "the schema";
    std::string text = "<xs:" + element->GetLocalName();
    for (const char* name : {"name", "ref", "substitutionGroup", "type", "base", "value",
                             "schemaLocation", "namespace", "minOccurs", "maxOccurs", "use"}) {
      std::string value;
      if (Attribute(element, name, &value)) text += std::string(" ") + name + "=\"" + value + "\"";
    }
    return text + ">";
  }

  // ---- Loading ----

  std::string Canonical(const std::string& path, const CDoc* from, const CXmlElement* at) {
    char* resolved = realpath(path.c_str(), nullptr);
    if (resolved == nullptr) {
      if (from != nullptr) Fail(*from, at, "cannot read the schema file '" + path + "'");
      throw CSchemaError(path, 0, "cannot read the schema file");
    }
    std::string canonical(resolved);
    std::free(resolved);
    return canonical;
  }

  void Load(const std::string& path, int output, CDoc* from, const CXmlElement* at,
            const std::string* chameleonNamespace = nullptr) {
    const std::string canonical = Canonical(path, from, at);
    if (m_byPath.count(canonical) != 0) return;  // seen before: include and import cycles end
    const auto named = m_named.find(canonical);
    if (named != m_named.end()) output = named->second;
    auto doc = std::make_unique<CDoc>();
    doc->path = path;
    doc->output = output;
    doc->tree = std::make_unique<CXmlDocument>();
    doc->tree->SetRecordLines(true);
    try {
      doc->tree->Load(path.c_str());
    } catch (const OvXmlLib6::COvException& e) {
      const std::string message = e.GetFullMessage();
      std::uint32_t line = 0;
      std::smatch match;
      if (std::regex_search(message, match, std::regex("line (\\d+)"))) {
        line = static_cast<std::uint32_t>(std::stoul(match[1]));
      }
      throw CSchemaError(path, line, "not well-formed XML (" + message + ")");
    }
    doc->root = doc->tree->GetDocumentElement();
    if (!IsXsd(doc->root, "schema")) {
      Fail(*doc, doc->root,
           "not an XML Schema document: the document element is {" + doc->root->GetNamespaceURI() +
               "}" + doc->root->GetLocalName());
    }
    const bool hasNamespace = Attribute(doc->root, "targetNamespace", &doc->targetNamespace);
    if (!hasNamespace && chameleonNamespace != nullptr) {
      doc->targetNamespace = *chameleonNamespace;
      doc->chameleon = !chameleonNamespace->empty();
    } else if (chameleonNamespace != nullptr && doc->targetNamespace != *chameleonNamespace) {
      Fail(*from, at,
           "the included schema's target namespace '" + doc->targetNamespace +
               "' differs from the including schema's");
    }
    doc->elementsQualified = AttributeOr(doc->root, "elementFormDefault", "") == "qualified";
    doc->attributesQualified = AttributeOr(doc->root, "attributeFormDefault", "") == "qualified";
    CDoc* loaded = doc.get();
    m_byPath[canonical] = loaded;
    m_docs.push_back(std::move(doc));
    m_set.files.push_back(path);
    for (CXmlElement* child = loaded->root->GetFirstElement(); child != nullptr;
         child = child->GetNextSiblingElement()) {
      if (IsXsd(child, "redefine") || IsXsd(child, "override")) {
        Fail(*loaded, child, "redefinition of components cannot be mapped");
      }
      const bool include = IsXsd(child, "include");
      if (!include && !IsXsd(child, "import")) continue;
      std::string location;
      if (!Attribute(child, "schemaLocation", &location)) {
        if (include) Fail(*loaded, child, "an include needs a schemaLocation");
        continue;  // an import that only names a namespace
      }
      if (location.find("://") != std::string::npos || location.rfind("file:", 0) == 0) {
        Fail(*loaded, child,
             "the schema location '" + location +
                 "' is not a local file; only local files are read");
      }
      const std::string target = location[0] == '/' ? location : DirectoryOf(path) + location;
      if (include) {
        Load(target, output, loaded, child, &loaded->targetNamespace);
      } else {
        Load(target, output, loaded, child);
      }
    }
  }

  // ---- Indexing the global components ----

  void Index(CDoc& doc) {
    for (CXmlElement* child = doc.root->GetFirstElement(); child != nullptr;
         child = child->GetNextSiblingElement()) {
      if (child->GetNamespaceURI() != kXsd) Fail(doc, child, "unexpected element in the schema");
      const std::string& kind = child->GetLocalName();
      std::map<CQName, CComponent>* table = nullptr;
      if (kind == "complexType" || kind == "simpleType") {
        table = &m_types;
      } else if (kind == "element") {
        table = &m_elements;
      } else if (kind == "attribute") {
        table = &m_attributes;
      } else if (kind == "group") {
        table = &m_groups;
      } else if (kind == "attributeGroup") {
        table = &m_attributeGroups;
      } else if (kind == "annotation" || kind == "include" || kind == "import" ||
                 kind == "notation") {
        continue;
      } else {
        Fail(doc, child, "unexpected element in the schema");
      }
      std::string name;
      if (!Attribute(child, "name", &name)) Fail(doc, child, "a global component needs a name");
      const CQName key(doc.targetNamespace, name);
      const auto found = table->find(key);
      if (found != table->end()) {
        const CComponent& first = found->second;
        Fail(doc, child,
             "duplicate name '" + name + "': declared before at " + first.doc->path + ":" +
                 std::to_string(first.doc->tree->GetElementLine(first.element)));
      }
      (*table)[key] = CComponent{&doc, child};
      if (table == &m_elements) m_elementOrder.push_back(CComponent{&doc, child});
    }
  }

  // ---- Names ----

  CQName ResolveQName(const CDoc& doc, const CXmlElement* at, const std::string& text) {
    const std::string value = Trim(text);
    const std::size_t colon = value.find(':');
    if (colon == std::string::npos) {
      std::string ns = doc.tree->LookupNamespaceFromAlias("");
      if (ns.empty() && doc.chameleon) ns = doc.targetNamespace;
      return CQName(ns, value);
    }
    const std::string prefix = value.substr(0, colon);
    if (prefix == "xml") return CQName(kXmlNs, value.substr(colon + 1));
    const std::string ns = doc.tree->LookupNamespaceFromAlias(prefix.c_str());
    if (ns.empty()) Fail(doc, at, "the prefix '" + prefix + "' is not declared");
    return CQName(ns, value.substr(colon + 1));
  }

  const CComponent& Lookup(std::map<CQName, CComponent>& table, const CDoc& doc,
                           const CXmlElement* at, const char* attribute, const char* what) {
    std::string text;
    Attribute(at, attribute, &text);
    const CQName name = ResolveQName(doc, at, text);
    const auto found = table.find(name);
    if (found == table.end()) {
      Fail(doc, at, std::string("undefined ") + what + " '" + text + "'");
    }
    return found->second;
  }

  // A name not used yet by a class or an enumeration.
  std::string UniqueName(const std::string& wanted) {
    std::string name = wanted;
    for (int n = 2; m_names.count(name) != 0; ++n) name = wanted + std::to_string(n);
    m_names.insert(name);
    return name;
  }

  // A class name not used yet: the prefix, the stem (numbered from 2 when taken), the suffix.
  std::string ClassName(const std::string& stem) {
    std::string name = m_naming.classPrefix + stem + m_naming.classSuffix;
    for (int n = 2; m_names.count(name) != 0; ++n) {
      name = m_naming.classPrefix + stem + std::to_string(n) + m_naming.classSuffix;
    }
    m_names.insert(name);
    return name;
  }

  static const std::string& StemOf(const CClassModel& model) { return model.stem; }

  static int Occurs(const CDoc& doc, const CXmlElement* element, const char* name, CReader* self) {
    std::string text;
    if (!Attribute(element, name, &text)) return 1;
    text = Trim(text);
    if (text == "unbounded") {
      if (std::string(name) == "maxOccurs") return -1;
      self->Fail(doc, element, "minOccurs cannot be unbounded");
    }
    int value = 0;
    if (!ParseCount(text, &value)) {
      self->Fail(doc, element, std::string("invalid ") + name + " '" + text + "'");
    }
    return value;
  }

  // ---- Simple types ----

  // The simple type a type name names; null for a complex type (*complex then says which).
  bool ResolveSimpleByName(const CDoc& doc, const CXmlElement* at, const char* attribute,
                           CSimpleType* simple, const CComponent** complex) {
    std::string text;
    Attribute(at, attribute, &text);
    const CQName name = ResolveQName(doc, at, text);
    if (name.first == kXsd) {
      if (name.second == "anyType") {
        *complex = nullptr;
        return false;
      }
      if (!BuiltinType(name.second, simple)) {
        Fail(doc, at, "unknown built-in type '" + text + "'");
      }
      return true;
    }
    const auto found = m_types.find(name);
    if (found == m_types.end()) Fail(doc, at, "undefined type '" + text + "'");
    const CComponent& component = found->second;
    if (IsXsd(component.element, "complexType")) {
      *complex = &component;
      return false;
    }
    *simple = SimpleTypeOf(*component.doc, component.element, name.second);
    return true;
  }

  // A simpleType element: restriction, list or union. `nameHint` names its enumeration when it
  // has one.
  CSimpleType SimpleTypeOf(CDoc& doc, CXmlElement* element, const std::string& nameHint) {
    const auto cached = m_simpleTypes.find(element);
    if (cached != m_simpleTypes.end()) return cached->second;
    if (!m_simpleInProgress.insert(element).second) {
      Fail(doc, element, "the simple type is derived from itself");
    }
    CSimpleType result;
    bool derived = false;
    for (CXmlElement* child = element->GetFirstElement(); child != nullptr;
         child = child->GetNextSiblingElement()) {
      if (IsXsd(child, "annotation")) continue;
      if (IsXsd(child, "list") || IsXsd(child, "union")) {
        // Lists and unions are held as their text.
        BuiltinType("token", &result);
        m_listTypes.insert(element);
        derived = true;
      } else if (IsXsd(child, "restriction")) {
        result = RestrictionOf(doc, child, nameHint, element);
        derived = true;
      } else {
        Fail(doc, child, "unexpected element in a simple type");
      }
    }
    if (!derived) Fail(doc, element, "a simple type needs a restriction, list or union");
    m_simpleInProgress.erase(element);
    m_simpleTypes[element] = result;
    return result;
  }

  CSimpleType RestrictionOf(CDoc& doc, CXmlElement* restriction, const std::string& nameHint,
                            CXmlElement* owner) {
    CSimpleType base;
    bool isList = false;
    if (Attribute(restriction, "base", nullptr)) {
      const CComponent* complex = nullptr;
      if (!ResolveSimpleByName(doc, restriction, "base", &base, &complex)) {
        Fail(doc, restriction, "a simple type cannot restrict a complex type");
      }
      std::string text;
      Attribute(restriction, "base", &text);
      const CQName name = ResolveQName(doc, restriction, text);
      const auto found = m_types.find(name);
      isList = found != m_types.end() && m_listTypes.count(found->second.element) != 0;
    } else {
      CXmlElement* inner = FirstChild(restriction, "simpleType");
      if (inner == nullptr) Fail(doc, restriction, "a restriction needs a base type");
      base = SimpleTypeOf(doc, inner, nameHint);
      isList = m_listTypes.count(inner) != 0;
    }
    if (isList) m_listTypes.insert(owner);
    CFacets added;
    std::vector<std::string> patterns;
    for (CXmlElement* facet = restriction->GetFirstElement(); facet != nullptr;
         facet = facet->GetNextSiblingElement()) {
      const std::string& kind = facet->GetLocalName();
      if (kind == "annotation" || kind == "simpleType") continue;
      std::string value;
      if (!Attribute(facet, "value", &value)) Fail(doc, facet, "a facet needs a value");
      const auto number = [&]() {
        int parsed = 0;
        if (!ParseCount(value, &parsed)) Fail(doc, facet, "invalid facet value '" + value + "'");
        return parsed;
      };
      if (isList && (kind == "length" || kind == "minLength" || kind == "maxLength")) {
        Fail(doc, facet, "a length facet of a list type cannot be mapped (lists are held as text)");
      }
      if (kind == "enumeration") {
        added.enumerations.push_back(value);
      } else if (kind == "pattern") {
        patterns.push_back(value);
      } else if (kind == "length") {
        added.length = number();
      } else if (kind == "minLength") {
        added.minLength = number();
      } else if (kind == "maxLength") {
        added.maxLength = number();
      } else if (kind == "totalDigits") {
        added.totalDigits = number();
      } else if (kind == "fractionDigits") {
        added.fractionDigits = number();
      } else if (kind == "minInclusive") {
        added.minInclusive = Trim(value);
      } else if (kind == "maxInclusive") {
        added.maxInclusive = Trim(value);
      } else if (kind == "minExclusive") {
        added.minExclusive = Trim(value);
      } else if (kind == "maxExclusive") {
        added.maxExclusive = Trim(value);
      } else if (kind == "whiteSpace") {
        const std::string rule = Trim(value);
        if (rule == "preserve") {
          base.rule = "Preserve";
        } else if (rule == "replace") {
          base.rule = "Replace";
        } else if (rule == "collapse") {
          base.rule = "Collapse";
        } else {
          Fail(doc, facet, "invalid whiteSpace value '" + value + "'");
        }
      } else {
        Fail(doc, facet, "unknown facet");
      }
    }
    if (patterns.size() == 1) {
      added.pattern = patterns[0];
    } else if (patterns.size() > 1) {
      // Patterns of one derivation step are alternatives.
      for (const std::string& pattern : patterns) {
        added.pattern += (added.pattern.empty() ? "(" : "|(") + pattern + ")";
      }
    }
    if (!added.pattern.empty() && !base.facets.pattern.empty()) {
      Fail(doc, restriction,
           "a pattern that restricts a type with a pattern of its own cannot be mapped");
    }
    if (base.enumeration != nullptr && !(added.pattern.empty() && added.length < 0 &&
                                         added.minLength < 0 && added.maxLength < 0)) {
      Fail(doc, restriction,
           "facets other than enumeration on an enumerated type cannot be mapped");
    }
    MergeFacets(added, &base.facets);
    if (!added.enumerations.empty()) {
      base.enumeration = nullptr;
      if (base.tag == "string" && !isList) {
        base.enumeration = MakeEnum(doc, nameHint, added.enumerations);
        base.facets.enumerations.clear();
      }
    }
    return base;
  }

  const CEnumModel* MakeEnum(const CDoc& doc, const std::string& nameHint,
                             const std::vector<std::string>& values) {
    auto model = std::make_unique<CEnumModel>();
    model->name = UniqueName(PascalCase(nameHint));
    model->values = values;
    model->output = doc.output;
    std::set<std::string> used;
    for (const std::string& value : values) {
      std::string identifier = PascalCase(value);
      if (identifier.empty()) identifier = "Empty";
      // Keep the text's own case where it is an identifier already ("open" stays open).
      bool plain = !value.empty() && !(value[0] >= '0' && value[0] <= '9');
      for (char c : value) {
        plain = plain && ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                          (c >= '0' && c <= '9') || c == '_');
      }
      if (plain) identifier = value;
      std::string unique = identifier;
      for (int n = 2; used.count(unique) != 0; ++n) unique = identifier + std::to_string(n);
      used.insert(unique);
      model->identifiers.push_back(model->name + "_" + unique);
    }
    m_set.enums.push_back(std::move(model));
    return m_set.enums.back().get();
  }

  static CXmlElement* FirstChild(const CXmlElement* element, const char* localName) {
    for (CXmlElement* child = element->GetFirstElement(); child != nullptr;
         child = child->GetNextSiblingElement()) {
      if (IsXsd(child, localName)) return child;
    }
    return nullptr;
  }

  // ---- Classes ----

  CClassModel* NewClass(const CDoc& doc, const CXmlElement* at, const std::string& stem) {
    auto model = std::make_unique<CClassModel>();
    model->name = ClassName(PascalCase(stem));
    model->stem = model->name.substr(
        m_naming.classPrefix.size(),
        model->name.size() - m_naming.classPrefix.size() - m_naming.classSuffix.size());
    model->targetNamespace = doc.targetNamespace;
    model->file = doc.path;
    model->line = doc.tree->GetElementLine(at);
    model->output = doc.output;
    m_set.classes.push_back(std::move(model));
    return m_set.classes.back().get();
  }

  // The class of a complexType element (global or anonymous), built on first use. A type
  // reached through a member while a type it derives from is still being built (a type whose
  // content holds elements of its extensions) is built once the outermost type is complete.
  CClassModel* ClassOfType(CDoc& doc, CXmlElement* complexType, const std::string& stem) {
    const auto found = m_classes.find(complexType);
    if (found != m_classes.end()) {
      CClassModel* model = found->second;
      const auto pending = std::find_if(m_pending.begin(), m_pending.end(),
                                        [&](const CPending& p) { return p.model == model; });
      if (pending != m_pending.end() && m_resolvingBase) {
        m_pending.erase(pending);  // needed complete now, as a base
        Fill(doc, complexType, model);
      } else if (model->resolving && m_resolvingBase) {
        // A member of its own type is fine; a base of its own is not, and neither is a base
        // whose content, still being built, needs the type that extends it complete.
        bool cycle = true;
        for (auto it = m_filling.rbegin(); it != m_filling.rend() && it->first != model; ++it) {
          cycle = cycle && it->second;
        }
        if (cycle) Fail(doc, complexType, "the type is derived from itself");
        Fail(doc, complexType,
             "an element in the type's content has a type that extends it, which cannot be "
             "mapped");
      }
      return model;
    }
    CClassModel* model = NewClass(doc, complexType, stem);
    m_classes[complexType] = model;
    std::string name;
    if (Attribute(complexType, "name", &name)) model->typeName = name;
    if (!m_resolvingBase && ExtendsIncomplete(doc, complexType)) {
      m_pending.push_back({&doc, complexType, model});
      return model;
    }
    Fill(doc, complexType, model);
    // Outermost: the types put off are built now, each maybe putting off more.
    while (m_filling.empty() && !m_pending.empty()) {
      const CPending next = m_pending.front();
      m_pending.erase(m_pending.begin());
      Fill(*next.doc, next.complexType, next.model);
    }
    return model;
  }

  void Fill(CDoc& doc, CXmlElement* complexType, CClassModel* model) {
    m_filling.emplace_back(model, m_resolvingBase);
    // The groups being expanded belong to the class that refers to this type: a group that
    // reaches itself through an element's type is recursion through a class, which is fine.
    std::vector<const CXmlElement*> outerGroups;
    outerGroups.swap(m_expandingGroups);
    // Likewise a base being resolved: the types of its members may refer to it.
    const bool resolvingBase = m_resolvingBase;
    m_resolvingBase = false;
    FillComplexType(doc, complexType, model);
    m_resolvingBase = resolvingBase;
    outerGroups.swap(m_expandingGroups);
    m_filling.pop_back();
  }

  // Whether a complex type derives from a type whose class is being built.
  bool ExtendsIncomplete(const CDoc& doc, const CXmlElement* complexType) {
    const CDoc* at = &doc;
    const CXmlElement* type = complexType;
    for (int step = 0; step < 10000; ++step) {  // a derivation cycle is reported when built
      const CXmlElement* content = FirstChild(type, "complexContent");
      if (content == nullptr) content = FirstChild(type, "simpleContent");
      const CXmlElement* derivation = content ? FirstChild(content, "extension") : nullptr;
      if (content != nullptr && derivation == nullptr)
        derivation = FirstChild(content, "restriction");
      std::string base;
      if (derivation == nullptr || !Attribute(derivation, "base", &base)) return false;
      const auto found = m_types.find(ResolveQName(*at, derivation, base));
      if (found == m_types.end()) return false;
      const auto model = m_classes.find(found->second.element);
      if (model != m_classes.end() && model->second->resolving) return true;
      at = found->second.doc;
      type = found->second.element;
    }
    return false;
  }

  void Inherit(CClassModel* model, CClassModel* base) {
    model->base = base;
    model->elements = base->elements;
    model->attributes = base->attributes;
    model->text = base->text;
    model->group = base->group;
    model->firstOwnIndex = base->propertyCount;
  }

  CClassModel* BaseClass(CDoc& doc, CXmlElement* derivation) {
    const CComponent& base = Lookup(m_types, doc, derivation, "base", "base type");
    if (!IsXsd(base.element, "complexType")) return nullptr;
    std::string name;
    Attribute(base.element, "name", &name);
    const bool was = m_resolvingBase;
    m_resolvingBase = true;
    CClassModel* model = ClassOfType(*base.doc, base.element, name);
    m_resolvingBase = was;
    if (!model->complete) Fail(doc, derivation, "the type is derived from itself");
    return model;
  }

  bool IsAnyType(const CDoc& doc, const CXmlElement* derivation) {
    std::string text;
    Attribute(derivation, "base", &text);
    const CQName name = ResolveQName(doc, derivation, text);
    return name.first == kXsd && name.second == "anyType";
  }

  void FillComplexType(CDoc& doc, CXmlElement* complexType, CClassModel* model) {
    model->resolving = true;
    model->abstract = IsTrue(AttributeOr(complexType, "abstract", "false"));
    bool mixed = AttributeOr(complexType, "mixed", "false") == "true";
    for (CXmlElement* child = complexType->GetFirstElement(); child != nullptr;
         child = child->GetNextSiblingElement()) {
      if (IsXsd(child, "annotation")) continue;
      if (IsXsd(child, "simpleContent")) {
        SimpleContent(doc, child, model);
      } else if (IsXsd(child, "complexContent")) {
        if (AttributeOr(child, "mixed", "false") == "true") mixed = true;
        if (ComplexContent(doc, child, model)) return;  // a restriction, complete
      } else if (IsContentChild(child)) {
        Content(doc, child, model);
      } else {
        Fail(doc, child, "unexpected element in a complex type");
      }
    }
    if (mixed && model->text.empty()) {
      CMemberModel text;
      text.kind = CMemberModel::Kind::Text;
      BuiltinType("string", &text.simple);
      text.xmlName = "Text";
      text.accessor = "Text";
      model->text.push_back(text);
    }
    Seal(doc, complexType, model);
  }

  static bool IsParticle(const CXmlElement* child) {
    return IsXsd(child, "sequence") || IsXsd(child, "choice") || IsXsd(child, "all") ||
           IsXsd(child, "group");
  }
  static bool IsAttributeChild(const CXmlElement* child) {
    return IsXsd(child, "attribute") || IsXsd(child, "attributeGroup") ||
           IsXsd(child, "anyAttribute");
  }
  static bool IsContentChild(const CXmlElement* child) {
    return IsParticle(child) || IsAttributeChild(child);
  }

  // The particle and attributes of a type or of a derivation.
  void Content(CDoc& doc, CXmlElement* child, CClassModel* model) {
    if (IsAttributeChild(child)) {
      std::set<const CXmlElement*> groups;
      AddAttribute(doc, child, model, &groups);
    } else {
      TopParticle(doc, child, model);
    }
  }

  void SimpleContent(CDoc& doc, CXmlElement* content, CClassModel* model) {
    CXmlElement* derivation = FirstChild(content, "extension");
    if (derivation == nullptr) {
      Fail(doc, content, "simpleContent other than an extension cannot be mapped");
    }
    CSimpleType simple;
    const CComponent* complex = nullptr;
    if (ResolveSimpleByName(doc, derivation, "base", &simple, &complex)) {
      CMemberModel text;
      text.kind = CMemberModel::Kind::Text;
      text.simple = simple;
      text.xmlName = "Value";
      text.accessor = "Value";
      model->text.push_back(text);
    } else {
      if (complex == nullptr) Fail(doc, derivation, "simpleContent cannot extend anyType");
      CClassModel* base = BaseClass(doc, derivation);
      if (base->text.empty()) {
        Fail(doc, derivation, "simpleContent must extend a simple type or simple content");
      }
      Inherit(model, base);
      base->derived.push_back(model);
    }
    for (CXmlElement* child = derivation->GetFirstElement(); child != nullptr;
         child = child->GetNextSiblingElement()) {
      if (IsXsd(child, "annotation")) continue;
      if (!IsAttributeChild(child)) Fail(doc, child, "unexpected element in simpleContent");
      Content(doc, child, model);
    }
  }

  // Returns true for a restriction, which completes the class.
  bool ComplexContent(CDoc& doc, CXmlElement* content, CClassModel* model) {
    CXmlElement* derivation = FirstChild(content, "extension");
    const bool extension = derivation != nullptr;
    if (!extension) derivation = FirstChild(content, "restriction");
    if (derivation == nullptr)
      Fail(doc, content, "complexContent needs an extension or restriction");
    if (!IsAnyType(doc, derivation)) {
      if (!extension) {
        Restriction(doc, derivation, model);
        return true;
      }
      CClassModel* base = BaseClass(doc, derivation);
      if (base == nullptr) Fail(doc, derivation, "complexContent cannot extend a simple type");
      Inherit(model, base);
      base->derived.push_back(model);
    }
    for (CXmlElement* child = derivation->GetFirstElement(); child != nullptr;
         child = child->GetNextSiblingElement()) {
      if (IsXsd(child, "annotation")) continue;
      if (!IsContentChild(child)) Fail(doc, child, "unexpected element in complexContent");
      Content(doc, child, model);
    }
    return false;
  }

  // A restriction of a complex type: a class derived from the base's that holds the base's
  // members and lists in its tables only those the restriction keeps, with the restriction's
  // occurrences and facets. It adds no member of its own, so its content must be a flat list of
  // the base's elements (no nested groups) and its attributes must be the base's.
  void Restriction(CDoc& doc, CXmlElement* derivation, CClassModel* model) {
    CClassModel* base = BaseClass(doc, derivation);
    if (base == nullptr || !base->text.empty()) {
      Fail(doc, derivation, "complexContent restriction of simple content cannot be mapped");
    }
    CClassModel scratch;  // the restriction's own declarations, matched against the base's
    scratch.stem = model->stem;
    scratch.resolving = true;
    for (CXmlElement* child = derivation->GetFirstElement(); child != nullptr;
         child = child->GetNextSiblingElement()) {
      if (IsXsd(child, "annotation")) continue;
      if (IsAttributeChild(child)) {
        Content(doc, child, &scratch);
        continue;
      }
      if (!IsXsd(child, "sequence") && !IsXsd(child, "choice") && !IsXsd(child, "all")) {
        Fail(doc, child,
             "a restriction's content other than a sequence, choice or all cannot be "
             "mapped");
      }
      for (CXmlElement* particle = child->GetFirstElement(); particle != nullptr;
           particle = particle->GetNextSiblingElement()) {
        if (!IsXsd(particle, "element") && !IsXsd(particle, "any") &&
            !IsXsd(particle, "annotation")) {
          Fail(doc, particle, "a model group nested in a restriction cannot be mapped");
        }
        CComponent head;
        std::vector<CComponent> branches;
        if (ReferencesHead(doc, particle, &head, &branches)) {
          Fail(doc, particle, "the head of a substitution group in a restriction cannot be mapped");
        }
      }
      scratch.group = KindOf(child);
      if (base->elements.size() > 1 && scratch.group != base->group) {
        Fail(doc, child, "a restriction with another kind of model group cannot be mapped");
      }
      AddParticles(doc, child, &scratch, scratch.group, Occurs(doc, child, "minOccurs", this) == 0);
    }
    Inherit(model, base);
    base->derived.push_back(model);
    model->group = scratch.group;
    model->elements.clear();
    for (const CMemberModel& restricted : scratch.elements) {
      model->elements.push_back(Restricted(doc, derivation, base->elements, restricted));
    }
    for (const CMemberModel& restricted : scratch.attributes) {
      auto kept = std::find_if(
          model->attributes.begin(), model->attributes.end(), [&](const CMemberModel& member) {
            return member.xmlName == restricted.xmlName && member.xmlNs == restricted.xmlNs;
          });
      if (kept == model->attributes.end()) {
        if (restricted.kind == CMemberModel::Kind::AnyAttribute) continue;
        Fail(doc, derivation,
             "the restriction declares the attribute '" + restricted.xmlName +
                 "' that its base does not have");
      }
      *kept = Restricted(doc, derivation, model->attributes, restricted);
    }
    // A prohibited attribute is left out of the tables.
    for (CXmlElement* child = derivation->GetFirstElement(); child != nullptr;
         child = child->GetNextSiblingElement()) {
      std::string name;
      if (IsXsd(child, "attribute") && AttributeOr(child, "use", "") == "prohibited" &&
          Attribute(child, "name", &name)) {
        model->attributes.erase(
            std::remove_if(model->attributes.begin(), model->attributes.end(),
                           [&](const CMemberModel& member) { return member.xmlName == name; }),
            model->attributes.end());
      }
    }
    model->propertyCount = base->propertyCount;
    model->resolving = false;
    model->complete = true;
  }

  // The base's member that a restriction's declaration restricts, with the restriction's
  // occurrences and facets where the member's storage holds them.
  CMemberModel Restricted(CDoc& doc, CXmlElement* at, const std::vector<CMemberModel>& members,
                          const CMemberModel& restricted) {
    for (const CMemberModel& member : members) {
      if (member.xmlName != restricted.xmlName || member.xmlNs != restricted.xmlNs) continue;
      const bool collection = member.cardinality == Cardinality::Collection;
      if (member.pseudo || member.kind != restricted.kind ||
          collection != (restricted.cardinality == Cardinality::Collection) ||
          (member.kind == CMemberModel::Kind::Primitive &&
           member.simple.cppType != restricted.simple.cppType)) {
        Fail(doc, at,
             "the restriction of '" + member.xmlName +
                 "' changes how it is held and cannot be "
                 "mapped");
      }
      CMemberModel kept = member;
      if (!collection) kept.cardinality = restricted.cardinality;
      if (member.kind == CMemberModel::Kind::Primitive) kept.simple = restricted.simple;
      kept.hasDefault = restricted.hasDefault || member.hasDefault;
      if (restricted.hasDefault) kept.defaultValue = restricted.defaultValue;
      return kept;
    }
    Fail(doc, at,
         "the restriction declares '" + restricted.xmlName + "' that its base does not have");
  }

  static GroupKind KindOf(const CXmlElement* compositor) {
    if (IsXsd(compositor, "choice")) return GroupKind::Choice;
    if (IsXsd(compositor, "all")) return GroupKind::All;
    return GroupKind::Sequence;
  }

  void TopParticle(CDoc& doc, CXmlElement* particle, CClassModel* model) {
    const int minOccurs = Occurs(doc, particle, "minOccurs", this);
    const int maxOccurs = Occurs(doc, particle, "maxOccurs", this);
    const bool hasOwn = model->elements.size() > (model->base ? model->base->elements.size() : 0);
    const bool inheritsElements = model->base != nullptr && !model->base->elements.empty();
    if (IsXsd(particle, "group") || maxOccurs != 1 ||
        (inheritsElements &&
         (KindOf(particle) != GroupKind::Sequence || model->group != GroupKind::Sequence))) {
      // Kept as one member of a sequence: a group reference, a repeated compositor, or the
      // extension of content that is not a plain sequence.
      if (inheritsElements && model->group != GroupKind::Sequence) {
        Fail(doc, particle, "extending a choice or all group with more content cannot be mapped");
      }
      model->group = GroupKind::Sequence;
      Particle(doc, particle, model, GroupKind::Sequence, false);
      return;
    }
    if (hasOwn) Fail(doc, particle, "a complex type has one content model");
    model->group = KindOf(particle);
    AddParticles(doc, particle, model, model->group, minOccurs == 0);
  }

  void AddParticles(CDoc& doc, CXmlElement* compositor, CClassModel* model, GroupKind kind,
                    bool optional) {
    for (CXmlElement* child = compositor->GetFirstElement(); child != nullptr;
         child = child->GetNextSiblingElement()) {
      if (IsXsd(child, "annotation")) continue;
      Particle(doc, child, model, kind, optional);
    }
  }

  static Cardinality CardinalityOf(int minOccurs, int maxOccurs, GroupKind kind, bool optional) {
    if (maxOccurs == -1 || maxOccurs > 1) return Cardinality::Collection;
    if (minOccurs == 0 || optional || kind == GroupKind::Choice) return Cardinality::Optional;
    return Cardinality::Mandatory;
  }

  void Particle(CDoc& doc, CXmlElement* particle, CClassModel* model, GroupKind kind,
                bool optional) {
    const int minOccurs = Occurs(doc, particle, "minOccurs", this);
    const int maxOccurs = Occurs(doc, particle, "maxOccurs", this);
    if (maxOccurs != -1 && maxOccurs < minOccurs) {
      Fail(doc, particle, "maxOccurs is less than minOccurs");
    }
    if (maxOccurs == 0) return;  // a particle that cannot occur has nothing to hold
    if (IsXsd(particle, "element")) {
      CComponent head;
      std::vector<CComponent> branches;
      if (ReferencesHead(doc, particle, &head, &branches)) {
        SubstitutionGroup(doc, particle, model, kind, optional, minOccurs, maxOccurs, head,
                          branches);
        return;
      }
      AddElement(doc, particle, model, kind, optional, minOccurs, maxOccurs);
    } else if (IsXsd(particle, "any")) {
      CMemberModel member;
      member.kind = CMemberModel::Kind::AnyElement;
      member.xmlName = "AnyElement";
      member.accessor = "Any";
      member.restriction = Trim(AttributeOr(particle, "namespace", "##any"));
      SetOccurs(&member, minOccurs, maxOccurs, kind, optional);
      AddMember(doc, particle, model, std::move(member));
    } else if (IsXsd(particle, "sequence") || IsXsd(particle, "choice") || IsXsd(particle, "all")) {
      const GroupKind inner = KindOf(particle);
      const char* word = inner == GroupKind::Choice ? "Choice"
                         : inner == GroupKind::All  ? "All"
                                                    : "Sequence";
      NestedGroup(doc, particle, model, kind, optional, inner, minOccurs, maxOccurs,
                  StemOf(*model) + word, std::string(),
                  [&](CClassModel* target, GroupKind targetKind, bool targetOptional) {
                    AddParticles(doc, particle, target, targetKind, targetOptional);
                  });
    } else if (IsXsd(particle, "group")) {
      const CComponent& definition = Lookup(m_groups, doc, particle, "ref", "group");
      CClassModel* group = ClassOfGroup(*definition.doc, definition.element);
      AddGroupMember(doc, particle, model, group, kind, optional, minOccurs, maxOccurs);
    } else {
      Fail(doc, particle, "unexpected element in a model group");
    }
  }

  // A nested sequence, choice or all whose particles `fill` adds: a sequence in a sequence, or a
  // choice in a choice, adds no structure of its own; any other is a pseudo element of a class
  // of its own, named `stem`, under the accessor `accessor` (empty: the class's stem).
  void NestedGroup(CDoc& doc, CXmlElement* particle, CClassModel* model, GroupKind kind,
                   bool optional, GroupKind inner, int minOccurs, int maxOccurs,
                   const std::string& stem, const std::string& accessor,
                   const std::function<void(CClassModel*, GroupKind, bool)>& fill) {
    if (inner == kind && kind != GroupKind::All && maxOccurs == 1 &&
        (kind == GroupKind::Sequence || minOccurs == 1)) {
      fill(model, kind, optional || minOccurs == 0);
      return;
    }
    CClassModel* group = NewClass(doc, particle, stem);
    group->pseudo = true;
    group->elementName = StemOf(*group);
    group->group = inner;
    group->resolving = true;
    fill(group, inner, false);
    Seal(doc, particle, group);
    AddGroupMember(doc, particle, model, group, kind, optional, minOccurs, maxOccurs);
    if (!accessor.empty()) model->elements.back().accessor = accessor;
  }

  // A reference to the head of a substitution group: a choice of the head (unless abstract) and
  // of every member that may stand for it, with the reference's occurrences.
  void SubstitutionGroup(CDoc& doc, CXmlElement* particle, CClassModel* model, GroupKind kind,
                         bool optional, int minOccurs, int maxOccurs, const CComponent& head,
                         const std::vector<CComponent>& branches) {
    std::string name;
    Attribute(head.element, "name", &name);
    if (branches.empty()) {
      // Nothing can stand for it: a reference that may be left out, or a branch of a choice that
      // cannot be taken, holds nothing.
      if (minOccurs == 0 || optional || kind == GroupKind::Choice) return;
      Fail(doc, particle,
           "the abstract element '" + name + "' has no substitution group member to stand for it");
    }
    if (kind == GroupKind::All) {
      Fail(doc, particle, "the head of a substitution group in an all group cannot be mapped");
    }
    NestedGroup(doc, particle, model, kind, optional, GroupKind::Choice, minOccurs, maxOccurs,
                StemOf(*model) + PascalCase(name) + "Choice", PascalCase(name) + "Choice",
                [&](CClassModel* target, GroupKind targetKind, bool targetOptional) {
                  for (const CComponent& branch : branches) {
                    CMemberModel member;
                    Attribute(branch.element, "name", &member.xmlName);
                    member.xmlNs = branch.doc->targetNamespace;
                    AddDeclaredElement(doc, particle, *branch.doc, branch.element, target,
                                       std::move(member), targetKind, targetOptional, 1, 1);
                  }
                });
  }

  CClassModel* ClassOfGroup(CDoc& doc, CXmlElement* definition) {
    const auto found = m_classes.find(definition);
    if (found != m_classes.end()) {
      if (std::find(m_expandingGroups.begin(), m_expandingGroups.end(), definition) !=
          m_expandingGroups.end())
        Fail(doc, definition, "the group contains itself");
      return found->second;
    }
    m_expandingGroups.push_back(definition);
    std::string name;
    Attribute(definition, "name", &name);
    CClassModel* group = NewClass(doc, definition, name);
    m_classes[definition] = group;
    group->pseudo = true;
    group->elementName = name;
    group->resolving = true;
    CXmlElement* compositor = nullptr;
    for (CXmlElement* child = definition->GetFirstElement(); child != nullptr;
         child = child->GetNextSiblingElement()) {
      if (IsXsd(child, "annotation")) continue;
      if (compositor != nullptr ||
          !(IsXsd(child, "sequence") || IsXsd(child, "choice") || IsXsd(child, "all"))) {
        Fail(doc, child, "a group holds one sequence, choice or all");
      }
      compositor = child;
    }
    if (compositor == nullptr) Fail(doc, definition, "a group holds one sequence, choice or all");
    group->group = KindOf(compositor);
    AddParticles(doc, compositor, group, group->group, false);
    Seal(doc, definition, group);
    m_expandingGroups.pop_back();
    return group;
  }

  void AddGroupMember(CDoc& doc, CXmlElement* particle, CClassModel* model, CClassModel* group,
                      GroupKind kind, bool optional, int minOccurs, int maxOccurs) {
    CMemberModel member;
    member.kind = CMemberModel::Kind::Class;
    member.pseudo = true;
    member.type = group;
    member.xmlName = group->elementName;
    member.xmlNs = group->targetNamespace;
    member.accessor = StemOf(*group);
    SetOccurs(&member, minOccurs, maxOccurs, kind, optional);
    AddMember(doc, particle, model, std::move(member));
  }

  static void SetOccurs(CMemberModel* member, int minOccurs, int maxOccurs, GroupKind kind,
                        bool optional) {
    member->cardinality = CardinalityOf(minOccurs, maxOccurs, kind, optional);
    member->minOccurs = optional ? 0 : minOccurs;
    member->maxOccurs = maxOccurs;
  }

  // The declaration that a local element or attribute (*decl on entry) stands for: the global
  // one it refers to, in its schema's namespace, or itself, qualified by its form or by the
  // schema's default. Sets the member's name and namespace.
  void Declaration(CDoc& doc, std::map<CQName, CComponent>& globals, const char* what,
                   bool qualifiedByDefault, CDoc** declDoc, CXmlElement** decl,
                   CMemberModel* member) {
    CXmlElement* at = *decl;
    if (Attribute(at, "ref", nullptr)) {
      const CComponent& global = Lookup(globals, doc, at, "ref", what);
      *declDoc = global.doc;
      *decl = global.element;
      member->xmlNs = global.doc->targetNamespace;
    } else if (AttributeOr(at, "form", qualifiedByDefault ? "qualified" : "unqualified") ==
               "qualified") {
      member->xmlNs = doc.targetNamespace;
    }
    if (!Attribute(*decl, "name", &member->xmlName)) {
      Fail(doc, at, std::string("an ") + what + " needs a name");
    }
  }

  void AddElement(CDoc& doc, CXmlElement* particle, CClassModel* model, GroupKind kind,
                  bool optional, int minOccurs, int maxOccurs) {
    CDoc* declDoc = &doc;
    CXmlElement* decl = particle;
    CMemberModel member;
    Declaration(doc, m_elements, "element", doc.elementsQualified, &declDoc, &decl, &member);
    AddDeclaredElement(doc, particle, *declDoc, decl, model, std::move(member), kind, optional,
                       minOccurs, maxOccurs);
  }

  // The member of the element declaration `decl`, whose name `member` holds already, for the
  // particle `at`.
  void AddDeclaredElement(CDoc& doc, CXmlElement* at, CDoc& declDoc, CXmlElement* decl,
                          CClassModel* model, CMemberModel member, GroupKind kind, bool optional,
                          int minOccurs, int maxOccurs) {
    CheckSubstitution(declDoc, decl);
    member.accessor = PascalCase(member.xmlName);
    SetOccurs(&member, minOccurs, maxOccurs, kind, optional);
    ElementType(declDoc, decl, model, &member);
    member.nillable = IsTrue(AttributeOr(decl, "nillable", "false"));
    const CXmlElement* source =
        Attribute(at, "default", nullptr) || Attribute(at, "fixed", nullptr) ? at : decl;
    for (const char* kind : {"default", "fixed"}) {
      if (Attribute(source, kind, &member.valueConstraint)) member.valueConstraintKind = kind;
    }
    AddMember(doc, at, model, std::move(member));
  }

  // ---- Substitution groups ----

  // The heads a global element's substitutionGroup names (none without one).
  std::vector<CComponent> HeadsOf(const CComponent& element) {
    std::vector<CComponent> heads;
    std::string list;
    if (!Attribute(element.element, "substitutionGroup", &list)) return heads;
    std::size_t from = 0;
    while ((from = list.find_first_not_of(" \t\r\n", from)) != std::string::npos) {
      const std::size_t end = std::min(list.find_first_of(" \t\r\n", from), list.size());
      const std::string text = list.substr(from, end - from);
      const auto found = m_elements.find(ResolveQName(*element.doc, element.element, text));
      if (found == m_elements.end()) {
        Fail(*element.doc, element.element, "undefined substitution group head '" + text + "'");
      }
      heads.push_back(found->second);
      from = end;
    }
    return heads;
  }

  // Whether `element` may stand for `head` through its substitution groups, transitively.
  // `path` holds the elements whose groups are being followed, to find a cycle.
  bool StandsFor(const CComponent& element, const CXmlElement* head,
                 std::vector<const CXmlElement*>* path) {
    if (std::find(path->begin(), path->end(), element.element) != path->end()) {
      std::string name;
      Attribute(element.element, "name", &name);
      Fail(*element.doc, element.element,
           "the substitution groups of '" + name + "' lead back to it");
    }
    path->push_back(element.element);
    bool found = false;
    for (const CComponent& direct : HeadsOf(element)) {
      found = found || direct.element == head || StandsFor(direct, head, path);
    }
    path->pop_back();
    return found;
  }

  // What a reference to `head` may be in a document: the head unless abstract, then every
  // member of its substitution group that is not abstract, in document order (none when the
  // head blocks substitution).
  const std::vector<CComponent>& Substitutes(const CComponent& head) {
    const auto cached = m_substitutes.find(head.element);
    if (cached != m_substitutes.end()) return cached->second;
    std::vector<CComponent>& branches = m_substitutes[head.element];
    if (!IsTrue(AttributeOr(head.element, "abstract", "false"))) branches.push_back(head);
    const std::string block =
        " " + AttributeOr(head.element, "block", AttributeOr(head.doc->root, "blockDefault", "")) +
        " ";
    if (std::regex_search(block, std::regex("\\s(substitution|#all)\\s"))) return branches;
    for (const CComponent& element : m_elementOrder) {
      std::vector<const CXmlElement*> path;
      if (element.element != head.element &&
          !IsTrue(AttributeOr(element.element, "abstract", "false")) &&
          StandsFor(element, head.element, &path)) {
        branches.push_back(element);
      }
    }
    return branches;
  }

  // Whether an element particle refers to an abstract element or to the head of a substitution
  // group; if so, that element and what may stand for it.
  bool ReferencesHead(CDoc& doc, CXmlElement* particle, CComponent* head,
                      std::vector<CComponent>* branches) {
    if (!Attribute(particle, "ref", nullptr)) return false;
    *head = Lookup(m_elements, doc, particle, "ref", "element");
    *branches = Substitutes(*head);
    return branches->size() != 1 || (*branches)[0].element != head->element;
  }

  // The declaration whose type an element has: its own, or for a member of a substitution group
  // that names no type, its head's.
  CComponent TypeSource(const CComponent& element) {
    if (Attribute(element.element, "type", nullptr) ||
        FirstChild(element.element, "complexType") != nullptr ||
        FirstChild(element.element, "simpleType") != nullptr) {
      return element;
    }
    const std::vector<CComponent> heads = HeadsOf(element);
    return heads.empty() ? element : TypeSource(heads[0]);
  }

  // A type: a simpleType or complexType declaration, or a built-in type by name.
  struct CTypeRef {
    const CDoc* doc = nullptr;  // where a declaration is
    const CXmlElement* element = nullptr;
    std::string builtin;  // the XML Schema type's local name; "anyType" for no type at all
    bool operator==(const CTypeRef& other) const {
      return element == other.element && builtin == other.builtin;
    }
  };

  CTypeRef TypeByName(const CDoc& doc, const CXmlElement* at, const std::string& text) {
    const CQName name = ResolveQName(doc, at, text);
    CTypeRef type;
    if (name.first == kXsd) {
      type.builtin = name.second;
    } else {
      const auto found = m_types.find(name);
      if (found == m_types.end()) Fail(doc, at, "undefined type '" + text + "'");
      type.doc = found->second.doc;
      type.element = found->second.element;
    }
    return type;
  }

  CTypeRef TypeOf(const CComponent& element) {
    const CComponent source = TypeSource(element);
    CTypeRef type;
    std::string name;
    if (Attribute(source.element, "type", &name))
      return TypeByName(*source.doc, source.element, name);
    type.doc = source.doc;
    type.element = FirstChild(source.element, "complexType");
    if (type.element == nullptr) type.element = FirstChild(source.element, "simpleType");
    if (type.element == nullptr) type.builtin = "anyType";
    return type;
  }

  // The type a type is derived from; anyType's is anyType.
  CTypeRef BaseOf(const CTypeRef& type) {
    static const std::map<std::string, std::string> builtins = {
        {"normalizedString", "string"},
        {"token", "normalizedString"},
        {"language", "token"},
        {"Name", "token"},
        {"NMTOKEN", "token"},
        {"NCName", "Name"},
        {"ID", "NCName"},
        {"IDREF", "NCName"},
        {"ENTITY", "NCName"},
        {"integer", "decimal"},
        {"nonPositiveInteger", "integer"},
        {"negativeInteger", "nonPositiveInteger"},
        {"long", "integer"},
        {"int", "long"},
        {"short", "int"},
        {"byte", "short"},
        {"nonNegativeInteger", "integer"},
        {"positiveInteger", "nonNegativeInteger"},
        {"unsignedLong", "nonNegativeInteger"},
        {"unsignedInt", "unsignedLong"},
        {"unsignedShort", "unsignedInt"},
        {"unsignedByte", "unsignedShort"}};
    CTypeRef base;
    if (type.element == nullptr) {
      const auto found = builtins.find(type.builtin);
      base.builtin = found != builtins.end() ? found->second
                     : type.builtin == "anyType" || type.builtin == "anySimpleType"
                         ? "anyType"
                         : "anySimpleType";
      return base;
    }
    const CDoc& doc = *type.doc;
    for (const char* content : {"complexContent", "simpleContent"}) {
      if (const CXmlElement* holder = FirstChild(type.element, content)) {
        const CXmlElement* derivation = FirstChild(holder, "extension");
        if (derivation == nullptr) derivation = FirstChild(holder, "restriction");
        std::string name;
        if (derivation != nullptr && Attribute(derivation, "base", &name)) {
          return TypeByName(doc, derivation, name);
        }
      }
    }
    if (const CXmlElement* restriction = FirstChild(type.element, "restriction")) {
      std::string name;
      if (Attribute(restriction, "base", &name)) return TypeByName(doc, restriction, name);
      base.doc = type.doc;
      base.element = FirstChild(restriction, "simpleType");
      if (base.element != nullptr) return base;
    }
    base.builtin = IsXsd(type.element, "simpleType") ? "anySimpleType" : "anyType";
    return base;
  }

  // Whether `type` is `ancestor` or derived from it, through extensions and restrictions.
  bool DerivesFrom(CTypeRef type, const CTypeRef& ancestor) {
    for (int step = 0; step < 10000; ++step) {  // a derivation cycle is reported elsewhere
      if (type == ancestor) return true;
      if (type.element == nullptr && type.builtin == "anyType") return false;
      type = BaseOf(type);
    }
    return false;
  }

  // A global element in substitution groups: their heads are declared, they do not lead back
  // to it, and its type derives from each head's.
  void CheckSubstitution(CDoc& doc, CXmlElement* decl) {
    if (!Attribute(decl, "substitutionGroup", nullptr) || !m_checkedMembers.insert(decl).second) {
      return;
    }
    const CComponent element{&doc, decl};
    std::vector<const CXmlElement*> path;
    StandsFor(element, nullptr, &path);
    const CTypeRef type = TypeOf(element);
    for (const CComponent& head : HeadsOf(element)) {
      if (!DerivesFrom(type, TypeOf(head))) {
        std::string name;
        std::string headName;
        Attribute(decl, "name", &name);
        Attribute(head.element, "name", &headName);
        Fail(doc, decl,
             "the type of '" + name +
                 "' does not derive from the type of its substitution group "
                 "head '" +
                 headName + "'");
      }
    }
  }

  // The kind and type of an element member.
  void ElementType(CDoc& doc, CXmlElement* decl, CClassModel* owner, CMemberModel* member) {
    const CComponent source = TypeSource(CComponent{&doc, decl});
    CDoc& typeDoc = *source.doc;
    CXmlElement* complexType = FirstChild(source.element, "complexType");
    CXmlElement* simpleType = FirstChild(source.element, "simpleType");
    const std::string hint = StemOf(*owner) + PascalCase(member->xmlName);
    CSimpleType simple;
    bool isSimple = false;
    CClassModel* type = nullptr;
    if (complexType != nullptr) {
      const std::string stem = m_names.count(m_naming.classPrefix + PascalCase(member->xmlName) +
                                             m_naming.classSuffix) == 0
                                   ? member->xmlName
                                   : hint;
      type = ClassOfType(typeDoc, complexType, stem);
      if (source.element == decl) type->elementName = member->xmlName;
    } else if (simpleType != nullptr) {
      simple = SimpleTypeOf(typeDoc, simpleType, hint);
      isSimple = true;
    } else if (Attribute(source.element, "type", nullptr)) {
      const CComponent* complex = nullptr;
      isSimple = ResolveSimpleByName(typeDoc, source.element, "type", &simple, &complex);
      if (!isSimple && complex != nullptr) {
        std::string name;
        Attribute(complex->element, "name", &name);
        type = ClassOfType(*complex->doc, complex->element, name);
      }
    }
    if (type != nullptr) {
      member->kind = CMemberModel::Kind::Class;
      member->type = type;
    } else if (isSimple) {
      ApplyFixed(doc, decl, &simple);
      member->simple = simple;
      if (simple.enumeration != nullptr && member->cardinality == Cardinality::Collection) {
        // A repeated enumerated element is a string collection limited to the texts.
        member->simple.facets.enumerations = simple.enumeration->values;
        member->simple.enumeration = nullptr;
        BuiltinType("string", &member->simple);
        member->simple.facets.enumerations = simple.enumeration->values;
        member->simple.rule = simple.rule;
      }
      member->kind = member->simple.enumeration != nullptr ? CMemberModel::Kind::Enum
                                                           : CMemberModel::Kind::Primitive;
    } else {
      // anyType: any element of this name.
      member->kind = CMemberModel::Kind::AnyElement;
      member->restriction = "##any";
    }
  }

  void ApplyFixed(CDoc& doc, CXmlElement* decl, CSimpleType* simple) {
    std::string fixed;
    if (!Attribute(decl, "fixed", &fixed)) return;
    if (simple->enumeration != nullptr) {
      Fail(doc, decl, "a fixed value of an enumerated type cannot be mapped");
    }
    simple->facets.enumerations.assign(1, fixed);
  }

  // A sequence or choice may name an element in several places (each is a member of its own,
  // read where it stands); an all group, whose members come in any order, may not.
  void AddMember(CDoc& doc, CXmlElement* at, CClassModel* model, CMemberModel member) {
    for (const CMemberModel& other : model->elements) {
      if (model->group == GroupKind::All && other.kind != CMemberModel::Kind::AnyElement &&
          member.kind != CMemberModel::Kind::AnyElement && other.xmlName == member.xmlName &&
          other.xmlNs == member.xmlNs) {
        Fail(doc, at, "the element '" + member.xmlName + "' appears twice in an all group");
      }
    }
    model->elements.push_back(std::move(member));
  }

  // ---- Attributes ----

  void AddAttribute(CDoc& doc, CXmlElement* at, CClassModel* model,
                    std::set<const CXmlElement*>* groups) {
    if (IsXsd(at, "attributeGroup")) {
      const CComponent& group = Lookup(m_attributeGroups, doc, at, "ref", "attribute group");
      if (!groups->insert(group.element).second) {
        Fail(doc, at, "the attribute group refers to itself");
      }
      for (CXmlElement* child = group.element->GetFirstElement(); child != nullptr;
           child = child->GetNextSiblingElement()) {
        if (IsXsd(child, "annotation")) continue;
        if (!IsAttributeChild(child))
          Fail(*group.doc, child, "unexpected element in an attribute group");
        AddAttribute(*group.doc, child, model, groups);
      }
      groups->erase(group.element);
      return;
    }
    CMemberModel member;
    member.attribute = true;
    member.cardinality = Cardinality::Optional;
    if (IsXsd(at, "anyAttribute")) {
      for (const CMemberModel& other : model->attributes) {
        if (other.kind == CMemberModel::Kind::AnyAttribute) return;  // one wildcard holds all
      }
      member.kind = CMemberModel::Kind::AnyAttribute;
      member.xmlName = "AnyAttribute";
      member.accessor = "AnyAttributes";
      member.restriction = Trim(AttributeOr(at, "namespace", "##any"));
      model->attributes.push_back(std::move(member));
      return;
    }
    CDoc* declDoc = &doc;
    CXmlElement* decl = at;
    Declaration(doc, m_attributes, "attribute", doc.attributesQualified, &declDoc, &decl, &member);
    const std::string use = AttributeOr(at, "use", "optional");
    if (use == "prohibited") return;
    if (use == "required") member.cardinality = Cardinality::Mandatory;
    member.accessor = PascalCase(member.xmlName);
    CXmlElement* simpleType = FirstChild(decl, "simpleType");
    if (simpleType != nullptr) {
      member.simple = SimpleTypeOf(*declDoc, simpleType, StemOf(*model) + member.accessor);
    } else if (Attribute(decl, "type", nullptr)) {
      const CComponent* complex = nullptr;
      if (!ResolveSimpleByName(*declDoc, decl, "type", &member.simple, &complex)) {
        Fail(doc, at, "an attribute needs a simple type");
      }
    } else {
      BuiltinType("anySimpleType", &member.simple);
    }
    member.kind = member.simple.enumeration != nullptr ? CMemberModel::Kind::Enum
                                                       : CMemberModel::Kind::Primitive;
    std::string value;
    // The reference's own default or fixed value wins over the declaration's.
    const CXmlElement* source =
        Attribute(at, "default", nullptr) || Attribute(at, "fixed", nullptr) ? at : decl;
    if (Attribute(source, "default", &value) || Attribute(source, "fixed", &value)) {
      member.hasDefault = true;
      member.defaultValue = value;
      if (Attribute(source, "fixed", nullptr) && member.simple.enumeration == nullptr) {
        member.simple.facets.enumerations.assign(1, value);
      }
      if (member.simple.enumeration != nullptr) {
        const auto& values = member.simple.enumeration->values;
        if (std::find(values.begin(), values.end(), value) == values.end()) {
          Fail(doc, at, "the default value '" + value + "' is not one of the enumeration");
        }
      }
    }
    for (const CMemberModel& other : model->attributes) {
      if (other.xmlName == member.xmlName && other.xmlNs == member.xmlNs) {
        Fail(doc, at, "duplicate attribute '" + member.xmlName + "'");
      }
    }
    model->attributes.push_back(std::move(member));
  }

  // ---- Sealing a class: names and property indices of its own members ----

  void Seal(CDoc& doc, CXmlElement* at, CClassModel* model) {
    (void)doc;
    (void)at;
    std::set<std::string> used = {"Namespace",       "ElementName",      "Base",
                                  "ClassInfo",       "ClassElementInfo", "ClassAttributeInfo",
                                  "TargetNamespace", "SelectedElement",  "Type"};
    int index = model->firstOwnIndex;
    const auto name = [&](CMemberModel& member, bool own) {
      if (!own) {
        used.insert(member.accessor);
        return;
      }
      std::string wanted = member.accessor.empty() ? "Value" : member.accessor;
      if (used.count(wanted) != 0 && member.attribute) wanted += "Attribute";
      std::string unique = wanted;
      for (int n = 2; used.count(unique) != 0; ++n) unique = wanted + std::to_string(n);
      used.insert(unique);
      member.accessor = unique;
      member.field = "m_" + LowerFirst(unique);
      member.index = index++;
    };
    const std::size_t inheritedElements = model->base ? model->base->elements.size() : 0;
    const std::size_t inheritedAttributes = model->base ? model->base->attributes.size() : 0;
    const std::size_t inheritedText = model->base ? model->base->text.size() : 0;
    for (std::size_t i = 0; i < inheritedElements; ++i) name(model->elements[i], false);
    for (std::size_t i = 0; i < inheritedText; ++i) name(model->text[i], false);
    for (std::size_t i = 0; i < inheritedAttributes; ++i) name(model->attributes[i], false);
    for (std::size_t i = inheritedElements; i < model->elements.size(); ++i) {
      name(model->elements[i], true);
    }
    for (std::size_t i = inheritedText; i < model->text.size(); ++i) name(model->text[i], true);
    for (std::size_t i = inheritedAttributes; i < model->attributes.size(); ++i) {
      name(model->attributes[i], true);
    }
    model->propertyCount = index;
    model->resolving = false;
    model->complete = true;
  }

  // ---- The global components ----

  void BuildGlobals(CDoc& doc) {
    for (CXmlElement* child = doc.root->GetFirstElement(); child != nullptr;
         child = child->GetNextSiblingElement()) {
      std::string name;
      Attribute(child, "name", &name);
      if (IsXsd(child, "complexType")) {
        ClassOfType(doc, child, name);
      } else if (IsXsd(child, "simpleType")) {
        SimpleTypeOf(doc, child, name);
      } else if (IsXsd(child, "group")) {
        ClassOfGroup(doc, child);
      } else if (IsXsd(child, "element")) {
        GlobalElement(doc, child, name);
      } else if (IsXsd(child, "attributeGroup") || IsXsd(child, "attribute")) {
        // Checked where they are used; an unused one still has to be well-formed.
        CClassModel scratch;
        std::set<const CXmlElement*> groups;
        if (IsXsd(child, "attribute")) {
          CSimpleType simple;
          const CComponent* complex = nullptr;
          CXmlElement* inner = FirstChild(child, "simpleType");
          if (inner != nullptr) {
            SimpleTypeOf(doc, inner, name);
          } else if (Attribute(child, "type", nullptr) &&
                     !ResolveSimpleByName(doc, child, "type", &simple, &complex)) {
            Fail(doc, child, "an attribute needs a simple type");
          }
        }
      }
    }
  }

  // A global element: its class is the class of its anonymous type, or a class of its own
  // derived from its named type that only gives new objects the element's name.
  void GlobalElement(CDoc& doc, CXmlElement* element, const std::string& name) {
    CheckSubstitution(doc, element);
    const CClassModel* model = GlobalElementClass(doc, element, name);
    if (model != nullptr && !model->abstract &&
        !IsTrue(AttributeOr(element, "abstract", "false"))) {
      m_set.globalElements.push_back({name, doc.targetNamespace, model});
    }
  }

  // The class whose objects a global element is read into; null for a simple type.
  CClassModel* GlobalElementClass(CDoc& doc, CXmlElement* element, const std::string& name) {
    const CComponent source = TypeSource(CComponent{&doc, element});
    CXmlElement* complexType = FirstChild(source.element, "complexType");
    if (complexType != nullptr) {
      CClassModel* model = ClassOfType(*source.doc, complexType, name);
      if (source.element == element) model->elementName = name;
      return model;
    }
    CXmlElement* simpleType = FirstChild(source.element, "simpleType");
    if (simpleType != nullptr) {
      SimpleTypeOf(*source.doc, simpleType, name);
      return nullptr;
    }
    if (!Attribute(source.element, "type", nullptr)) return nullptr;
    CSimpleType simple;
    const CComponent* complex = nullptr;
    if (ResolveSimpleByName(*source.doc, source.element, "type", &simple, &complex) ||
        complex == nullptr) {
      return nullptr;
    }
    std::string typeName;
    Attribute(complex->element, "name", &typeName);
    CClassModel* type = ClassOfType(*complex->doc, complex->element, typeName);
    if (type->abstract) return type;
    const std::string wanted = m_naming.classPrefix + PascalCase(name) + m_naming.classSuffix;
    if (m_names.count(wanted) != 0) {
      if (type->elementName.empty()) type->elementName = name;
      return type;
    }
    CClassModel* model = NewClass(doc, element, name);
    Inherit(model, type);
    model->elementClass = true;
    model->elementName = name;
    model->targetNamespace = doc.targetNamespace;
    model->propertyCount = type->propertyCount;
    model->complete = true;
    return model;
  }

  // Names, substitution and class ids once every class is known.
  void Finish() {
    for (const auto& model : m_set.classes) {
      for (CMemberModel& member : model->elements) {
        if (member.kind == CMemberModel::Kind::Class && !member.pseudo &&
            member.type->elementName.empty()) {
          member.type->elementName = member.xmlName;
        }
      }
    }
    int classId = 0;
    for (const auto& model : m_set.classes) {
      if (model->elementName.empty()) model->elementName = model->typeName;
      if (!model->abstract) model->classId = classId++;
      for (CMemberModel& member : model->elements) {
        if (member.kind == CMemberModel::Kind::Class && member.type->Substitutable()) {
          member.kind = CMemberModel::Kind::Substitution;
        }
      }
    }
    for (const auto& model : m_set.classes) {
      for (const CMemberModel& member : model->elements) {
        if (member.kind == CMemberModel::Kind::Substitution && model->group == GroupKind::All) {
          throw CSchemaError(model->file, model->line,
                             "an element of an abstract or extended type in an all group cannot "
                             "be mapped (<xs:element name=\"" +
                                 member.xmlName + "\">)");
        }
      }
    }
  }

  CNaming m_naming;
  CSchemaSet m_set;
  std::vector<std::unique_ptr<CDoc>> m_docs;
  // The named groups whose expansion is under way for the class being built, innermost last.
  std::vector<const CXmlElement*> m_expandingGroups;
  std::map<std::string, CDoc*> m_byPath;
  std::map<std::string, int> m_named;  // canonical path of each named schema: its output
  std::map<CQName, CComponent> m_types, m_elements, m_attributes, m_groups, m_attributeGroups;
  std::map<const CXmlElement*, CClassModel*> m_classes;
  std::vector<CComponent> m_elementOrder;         // the global elements in document order
  std::set<const CXmlElement*> m_checkedMembers;  // substitution group members checked
  std::map<const CXmlElement*, std::vector<CComponent>> m_substitutes;  // of each head
  std::map<const CXmlElement*, CSimpleType> m_simpleTypes;
  std::set<const CXmlElement*> m_simpleInProgress;
  std::set<const CXmlElement*> m_listTypes;
  std::set<std::string> m_names;
  bool m_resolvingBase = false;
  // The classes being filled, innermost last, each with whether it was reached as a base.
  std::vector<std::pair<CClassModel*, bool>> m_filling;
  // Classes whose filling waits for a type they derive from, in the order they were reached.
  struct CPending {
    CDoc* doc;
    CXmlElement* complexType;
    CClassModel* model;
  };
  std::vector<CPending> m_pending;
};

}  // namespace

std::string PascalCase(const std::string& xmlName) {
  std::string result;
  bool upper = true;
  for (char c : xmlName) {
    const bool alnum = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    if (!alnum) {
      upper = true;
      continue;
    }
    result += upper && c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
    upper = false;
  }
  if (!result.empty() && result[0] >= '0' && result[0] <= '9') result = "_" + result;
  return result;
}

CSchemaSet ReadSchemas(const std::vector<std::string>& schemaFiles, const CNaming& naming) {
  CReader reader(naming);
  return reader.Read(schemaFiles);
}

}  // namespace ovxml_generate
