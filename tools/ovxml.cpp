// ovxml: command-line front end of the library. `ovxml convert` reads any XML document (text in
// any encoding the parser knows, optionally gzip- or zlib-compressed) into a tree of wildcard
// elements and writes it out again in the form asked for.
#include <OvXmlLib6.h>
#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <new>
#include <string>
#include <unistd.h>
#include <vector>

using namespace OvXmlLib6;

namespace {

constexpr std::uint64_t kProgressThreshold = 50ull * 1024 * 1024;

const char kUsage[] =
    "Usage: ovxml convert [options] IN OUT\n"
    "       ovxml --help\n"
    "\n"
    "Reads the XML document IN into a tree of wildcard elements and writes it to OUT.\n"
    "IN and OUT may be '-' for standard input and standard output. The kind of input is\n"
    "recognised from its content: XML text in any encoding the parser knows (UTF-8, UTF-16,\n"
    "ISO-8859-1, US-ASCII), optionally gzip- or zlib-compressed.\n"
    "\n"
    "Options:\n"
    "  --to xml      output XML text (the default and, for now, the only output form)\n"
    "  --gzip        compress the output with gzip\n"
    "  --zlib        compress the output in the zlib format\n"
    "  --utf16       write UTF-16 (little-endian, with a byte-order mark) instead of UTF-8\n"
    "  --format      indent the output, one element per line; whitespace-only text between\n"
    "                child elements is replaced by the indentation. Without it nothing is\n"
    "                added and the document's own whitespace is kept as text.\n"
    "  --crlf        end lines with CR LF instead of LF\n"
    "  --no-header   leave out the XML declaration\n"
    "  -h, --help    show this help\n"
    "\n"
    "A one-line summary goes to standard error; the exit status is 0 on success, 1 when the\n"
    "conversion fails and 2 for a usage error.\n";

struct Options {
  bool gzip = false;
  bool zlib = false;
  bool utf16 = false;
  bool format = false;
  bool crlf = false;
  bool noHeader = false;
  std::string in;
  std::string out;
};

// A failure with its message, reported by main.
struct ToolError {
  std::string message;
  int status;
};

[[noreturn]] void Fail(const std::string& message, int status = 1) {
  throw ToolError{message, status};
}

Options ParseArguments(const std::vector<std::string>& args) {
  Options options;
  std::vector<std::string> files;
  // args[0] is the program, args[1] the command.
  for (std::size_t i = 2; i < args.size(); ++i) {
    const std::string& a = args[i];
    if (a == "--to") {
      if (i + 1 >= args.size()) Fail("--to needs a value (xml)", 2);
      const std::string& kind = args[++i];
      if (kind == "fi" || kind == "finf" || kind == "fastinfoset")
        Fail("Fast Infoset output is not available yet; use --to xml", 2);
      if (kind != "xml") Fail("unknown output kind '" + kind + "' (expected xml)", 2);
    } else if (a == "--to=xml") {
    } else if (a == "--gzip") {
      options.gzip = true;
    } else if (a == "--zlib") {
      options.zlib = true;
    } else if (a == "--utf16") {
      options.utf16 = true;
    } else if (a == "--format") {
      options.format = true;
    } else if (a == "--crlf") {
      options.crlf = true;
    } else if (a == "--no-header") {
      options.noHeader = true;
    } else if (a == "-" || a.empty() || a[0] != '-') {
      files.push_back(a);
    } else {
      Fail("unknown option '" + a + "'", 2);
    }
  }
  if (options.gzip && options.zlib) Fail("--gzip and --zlib cannot be combined", 2);
  if (files.size() != 2) Fail("convert needs exactly two file arguments, IN and OUT", 2);
  options.in = files[0];
  options.out = files[1];
  return options;
}

double Megabytes(std::uint64_t bytes) { return static_cast<double>(bytes) / (1024.0 * 1024.0); }

// Progress on standard error, for big inputs when it is a terminal.
class Progress {
 public:
  Progress() : m_enabled(isatty(STDERR_FILENO) != 0) {}
  ~Progress() { Clear(); }
  void Reading(std::uint64_t done, std::uint64_t total) {
    if (!m_enabled || (total < kProgressThreshold && done < kProgressThreshold)) return;
    if (done - m_lastShown < 8 * 1024 * 1024 && done != total) return;
    m_lastShown = done;
    if (total != 0) {
      Show("reading %.1f of %.1f MB (%d%%)", Megabytes(done), Megabytes(total),
           static_cast<int>(done * 100 / total));
    } else {
      Show("reading %.1f MB", Megabytes(done));
    }
  }
  void Phase(const char* what, std::uint64_t size) {
    if (m_enabled && size >= kProgressThreshold) Show("%s %.1f MB ...", what, Megabytes(size));
  }
  void Clear() {
    if (m_shown) std::fprintf(stderr, "\r\033[K");
    m_shown = false;
  }

 private:
  template <class... Args>
  void Show(const char* format, Args... args) {
    std::fprintf(stderr, "\r\033[Kovxml: ");
    std::fprintf(stderr, format, args...);
    std::fflush(stderr);
    m_shown = true;
  }
  bool m_enabled;
  bool m_shown = false;
  std::uint64_t m_lastShown = 0;
};

std::vector<unsigned char> ReadInput(const std::string& name, Progress& progress) {
  const bool useStdin = name == "-";
  std::FILE* file = useStdin ? stdin : std::fopen(name.c_str(), "rb");
  if (file == nullptr) Fail("cannot open '" + name + "': " + std::strerror(errno));
  std::uint64_t total = 0;
  if (!useStdin && std::fseek(file, 0, SEEK_END) == 0) {
    const long size = std::ftell(file);
    if (size > 0) total = static_cast<std::uint64_t>(size);
    std::rewind(file);
  }
  std::vector<unsigned char> data;
  if (total != 0) data.reserve(total);
  unsigned char chunk[1 << 16];
  for (;;) {
    const std::size_t got = std::fread(chunk, 1, sizeof chunk, file);
    data.insert(data.end(), chunk, chunk + got);
    progress.Reading(data.size(), total);
    if (got < sizeof chunk) break;
  }
  const bool failed = std::ferror(file) != 0;
  const int error = errno;
  if (!useStdin) std::fclose(file);
  if (failed) Fail("cannot read '" + name + "': " + std::strerror(error));
  if (data.empty()) Fail("'" + name + "' is empty");
  if (data.size() > 0xFFFFFFFFull)
    Fail("'" + name + "' is larger than 4 GiB, which is not supported");
  return data;
}

void WriteOutput(const std::string& name, const CBinaryData& data) {
  const bool useStdout = name == "-";
  std::FILE* file = useStdout ? stdout : std::fopen(name.c_str(), "wb");
  if (file == nullptr) Fail("cannot create '" + name + "': " + std::strerror(errno));
  const std::size_t written = std::fwrite(data.GetData(), 1, data.GetLength(), file);
  bool ok = written == data.GetLength();
  int error = errno;
  if (useStdout) {
    ok = std::fflush(file) == 0 && ok;
  } else if (std::fclose(file) != 0) {
    ok = false;
  }
  if (!ok) {
    if (errno != 0) error = errno;
    Fail("cannot write '" + name + "': " + std::strerror(error));
  }
}

// Fast Infoset documents start with the bits 1110 0000 0000 0000 0000 0000 0000 0001, or with an
// XML declaration naming the encoding finf.
bool LooksLikeFastInfoset(const std::vector<unsigned char>& data) {
  if (data.size() >= 4 && data[0] == 0xE0 && data[1] == 0 && data[2] == 0 && data[3] == 1)
    return true;
  const std::string head(data.begin(), data.begin() + std::min<std::size_t>(data.size(), 64));
  return head.rfind("<?xml", 0) == 0 &&
         (head.find("'finf'") != std::string::npos || head.find("\"finf\"") != std::string::npos);
}

bool IsWhitespace(const std::string& text) {
  return text.find_first_not_of(" \t\r\n") == std::string::npos;
}

struct Counts {
  std::uint64_t elements = 0;
  std::uint64_t attributes = 0;
};

// Counts the tree's elements and attributes, and with `dropLayout` empties the whitespace-only
// text of elements that have child elements. Iterative, so any depth is fine.
Counts Walk(CElement* root, bool dropLayout) {
  Counts counts;
  std::vector<CElement*> pending{root};
  while (!pending.empty()) {
    CElement* element = pending.back();
    pending.pop_back();
    ++counts.elements;
    counts.attributes += static_cast<std::uint64_t>(element->GetAttributes()->GetCount());
    CSmartPtr<CElementCol> children = element->GetChildElements();
    if (dropLayout && children->GetCount() != 0 && IsWhitespace(element->GetText()))
      element->SetText("");
    for (CElement* child : *children) pending.push_back(child);
  }
  return counts;
}

// Names in xsi:type values keep the prefix they were written with, but the writer chooses its own
// prefixes for elements and attributes. Declaring those prefixes on the root element, with the
// namespaces the document bound them to, keeps such values meaningful in the output.
void KeepTypePrefixes(CElement* root, const CXmlDocument& document, CNamespaceAliasMap& aliases) {
  std::vector<CElement*> pending{root};
  while (!pending.empty()) {
    CElement* element = pending.back();
    pending.pop_back();
    for (CAttribute* attribute : *element->GetAttributes()) {
      if (attribute->GetName() != "type" ||
          attribute->GetNamespace() != CXmlWriter::kSchemaInstanceNamespace)
        continue;
      const std::string value = attribute->GetValue();
      const std::size_t colon = value.find(':');
      if (colon == std::string::npos) continue;
      const std::string prefix = value.substr(0, colon);
      const std::string uri = document.LookupNamespaceFromAlias(prefix.c_str());
      if (!uri.empty() && !aliases.DoesAliasExist(prefix.c_str()))
        aliases.Add(prefix.c_str(), uri.c_str());
    }
    for (CElement* child : *element->GetChildElements()) pending.push_back(child);
  }
}

int Convert(const std::vector<std::string>& args) {
  const Options options = ParseArguments(args);
  const auto start = std::chrono::steady_clock::now();
  Progress progress;

  const std::vector<unsigned char> input = ReadInput(options.in, progress);
  if (LooksLikeFastInfoset(input))
    Fail("'" + options.in +
         "' is a Fast Infoset document; reading Fast Infoset is not available yet");

  CXmlSerializationContext context;
  progress.Phase("parsing", input.size());
  CSmartPtr<CElement> root = new CElement("document");
  {
    // The tree is built here rather than by FromXmlStream so that the document's prefix
    // declarations can still be looked up once the elements are copied.
    CXmlDocument document(context);
    document.LoadXmlStream(input.data(), static_cast<std::uint32_t>(input.size()));
    root->CopyXmlElement(document.GetDocumentElement());
    KeepTypePrefixes(root, document, context.GetNamespaceAliases());
  }
  const Counts counts = Walk(root, options.format);

  progress.Phase("writing", input.size());
  const CompressionType compression = options.gzip   ? CompressionType_GZip
                                      : options.zlib ? CompressionType_ZLib
                                                     : CompressionType_None;
  const CBinaryData output = root->ToXmlStream(
      !options.noHeader, options.format, options.utf16 ? XmlEncoding_UTF16 : XmlEncoding_UTF8,
      options.crlf ? EOLType_CRLF : EOLType_LF, context, compression);
  root = nullptr;
  WriteOutput(options.out, output);
  progress.Clear();

  const double seconds =
      std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  std::fprintf(stderr,
               "ovxml: %s -> %s: %llu elements, %llu attributes, %zu bytes in, %u bytes out, "
               "%.3f s\n",
               options.in.c_str(), options.out.c_str(),
               static_cast<unsigned long long>(counts.elements),
               static_cast<unsigned long long>(counts.attributes), input.size(),
               static_cast<unsigned>(output.GetLength()), seconds);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> args(argv, argv + argc);
  try {
    if (args.size() < 2) Fail(std::string("no command given\n\n") + kUsage, 2);
    const std::string& command = args[1];
    if (command == "--help" || command == "-h" || command == "help") {
      std::fputs(kUsage, stdout);
      return 0;
    }
    if (command != "convert") Fail("unknown command '" + command + "'; try ovxml --help", 2);
    for (std::size_t i = 2; i < args.size(); ++i) {
      if (args[i] == "--help" || args[i] == "-h") {
        std::fputs(kUsage, stdout);
        return 0;
      }
    }
    return Convert(args);
  } catch (const ToolError& e) {
    std::fprintf(stderr, "ovxml: error: %s\n", e.message.c_str());
    return e.status;
  } catch (const COvException& e) {
    std::fprintf(stderr, "ovxml: error: %s\n", e.GetFullMessage().c_str());
    return 1;
  } catch (const std::bad_alloc&) {
    std::fprintf(stderr, "ovxml: error: out of memory\n");
    return 1;
  }
}
