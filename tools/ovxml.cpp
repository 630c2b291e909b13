// ovxml: command-line front end of the library. `ovxml convert` converts a document (XML text in
// any encoding the parser knows, optionally gzip- or zlib-compressed) as it reads it, in bounded
// memory, into the form asked for.
#include "generate/Generate.h"
#include "xml/StreamConverter.h"

#include <OvXmlLib6.h>
#include <cctype>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <getopt.h>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

using namespace OvXmlLib6;

namespace {

// Inputs from this size on show their progress on a terminal.
constexpr std::uint64_t kProgressThreshold = 4ull * 1024 * 1024;

const char kUsage[] =
    "Usage: ovxml convert [options] IN OUT\n"
    "       ovxml generate [options] -o DIR SCHEMA.xsd...  (see 'ovxml generate --help')\n"
    "       ovxml --help | --version\n"
    "\n"
    "Converts the document IN to XML text or Fast Infoset and writes it to OUT as it reads\n"
    "it, in constant memory whatever its size. Text, child elements, comments and processing\n"
    "instructions keep their order, and namespace declarations and prefixes stay where they\n"
    "were; the document type declaration is not kept. IN and OUT may be '-' for standard\n"
    "input and standard output. The kind of input is recognised from its content: XML text in\n"
    "UTF-8, UTF-16 or any encoding its declaration names that iconv knows (ISO-8859-15,\n"
    "windows-1252, Shift_JIS, GB18030, ...), or Fast Infoset, either optionally gzip- or\n"
    "zlib-compressed. A failed conversion leaves no output file.\n"
    "\n"
    "Options:\n"
    "  --to xml      output XML text (the default); also --to=xml\n"
    "  --to fi       output Fast Infoset (ITU-T X.891), which starts without an XML declaration\n"
    "  --gzip        compress the output with gzip\n"
    "  --zlib        compress the output in the zlib format\n"
    "  --max-inflated=SIZE  refuse compressed input that inflates to more than SIZE\n"
    "                bytes (K, M, G or T after the number: binary multiples); the default\n"
    "                is 1G, and the conversion stops as soon as the input passes it\n"
    "  -q, --quiet   no summary line\n"
    "  -h, --help    show this help\n"
    "  -V, --version show the version\n"
    "  --            ends the options (for file names that start with '-')\n"
    "For XML text output only:\n"
    "  --utf16       write UTF-16 (little-endian, with a byte-order mark) instead of UTF-8\n"
    "  --format      indent the output, one element per line; whitespace-only text between\n"
    "                child elements is replaced by the indentation, and elements with mixed\n"
    "                content are left as they are. Without it nothing is added and the\n"
    "                document's own whitespace is kept as text.\n"
    "  --crlf        end lines with CR LF instead of LF\n"
    "  --no-header   leave out the XML declaration\n"
    "\n"
    "A one-line summary goes to standard error unless --quiet, and the progress of inputs over\n"
    "4 MB when standard error is a terminal. A failure is reported as 'ovxml: FILE:LINE:COLUMN:\n"
    "message' (or 'ovxml: FILE: message' when it has no place in the text). The exit status is\n"
    "0 on success, 1 when the conversion fails and 2 for a usage error.\n";

const char kVersion[] = "ovxml (OvXmlLib6) 6.0.0\n";

struct Options {
  bool gzip = false;
  bool zlib = false;
  bool utf16 = false;
  bool format = false;
  bool crlf = false;
  bool noHeader = false;
  bool fastInfoset = false;
  bool quiet = false;
  bool help = false;
  bool version = false;
  std::uint64_t maxInflated = 0;  // 0: the library's default
  std::string in;
  std::string out;
};

// A failure with its message, reported by main.
struct ToolError {
  std::string message;
  int status;
  bool labelled;  // "ovxml: error: message" rather than "ovxml: message"
};

[[noreturn]] void Fail(const std::string& message, int status = 1, bool labelled = true) {
  throw ToolError{message, status, labelled};
}

void SetOutputKind(Options& options, const std::string& kind) {
  if (kind == "fi" || kind == "finf" || kind == "fastinfoset") {
    options.fastInfoset = true;
  } else if (kind == "xml") {
    options.fastInfoset = false;
  } else {
    Fail("unknown output kind '" + kind + "' (expected xml or fi)", 2);
  }
}

// A size with an optional binary multiple: "1048576", "512K", "4G".
std::uint64_t ParseSize(const char* option, const std::string& text) {
  std::size_t end = 0;
  unsigned long long value = 0;
  try {
    if (text.empty() || text[0] == '-') throw std::invalid_argument(text);
    value = std::stoull(text, &end, 10);
  } catch (const std::logic_error&) {
    Fail(std::string(option) + " needs a size such as 2G, not '" + text + "'", 2);
  }
  int shift = 0;
  if (end + 1 == text.size()) {
    const char* const units = "KMGT";
    const char* unit = std::strchr(units, std::toupper(static_cast<unsigned char>(text[end])));
    if (unit != nullptr && *unit != '\0') {
      shift = 10 * static_cast<int>(unit - units + 1);
      ++end;
    }
  }
  if (end != text.size() || value == 0 || value > (~0ull >> shift))
    Fail(std::string(option) + " needs a size such as 2G, not '" + text + "'", 2);
  return value << shift;
}

// Options by getopt_long: GNU style, so "--to fi" and "--to=fi" both work, options and files
// may come in any order, and "--" ends the options.
Options ParseArguments(int argc, char** argv) {
  enum { kTo = 256, kGzip, kZlib, kUtf16, kFormat, kCrlf, kNoHeader, kMaxInflated };
  static const option kOptions[] = {{"to", required_argument, nullptr, kTo},
                                    {"gzip", no_argument, nullptr, kGzip},
                                    {"zlib", no_argument, nullptr, kZlib},
                                    {"utf16", no_argument, nullptr, kUtf16},
                                    {"format", no_argument, nullptr, kFormat},
                                    {"crlf", no_argument, nullptr, kCrlf},
                                    {"no-header", no_argument, nullptr, kNoHeader},
                                    {"max-inflated", required_argument, nullptr, kMaxInflated},
                                    {"quiet", no_argument, nullptr, 'q'},
                                    {"help", no_argument, nullptr, 'h'},
                                    {"version", no_argument, nullptr, 'V'},
                                    {nullptr, 0, nullptr, 0}};
  Options options;
  opterr = 0;  // the messages are the tool's own
  optind = 1;
  for (;;) {
    const int c = getopt_long(argc, argv, ":qhV", kOptions, nullptr);
    if (c == -1) break;
    switch (c) {
      case kTo:
        SetOutputKind(options, optarg);
        break;
      case kGzip:
        options.gzip = true;
        break;
      case kZlib:
        options.zlib = true;
        break;
      case kUtf16:
        options.utf16 = true;
        break;
      case kFormat:
        options.format = true;
        break;
      case kCrlf:
        options.crlf = true;
        break;
      case kNoHeader:
        options.noHeader = true;
        break;
      case kMaxInflated:
        options.maxInflated = ParseSize("--max-inflated", optarg);
        break;
      case 'q':
        options.quiet = true;
        break;
      case 'h':
        options.help = true;
        break;
      case 'V':
        options.version = true;
        break;
      case ':':
        for (const option* o = kOptions; o->name != nullptr; ++o) {
          if (o->val == optopt && o->val == kTo) Fail("--to needs a value (xml or fi)", 2);
          if (o->val == optopt) Fail(std::string("--") + o->name + " needs a value", 2);
        }
        Fail("an option needs a value; try 'ovxml --help'", 2);
      default: {
        const std::string option = optopt != 0 && optopt < 256
                                       ? std::string("-") + static_cast<char>(optopt)
                                       : std::string(argv[optind - 1]);
        Fail("unknown option '" + option + "'; try 'ovxml --help'", 2);
      }
    }
  }
  if (options.help || options.version) return options;
  std::vector<std::string> files(argv + optind, argv + argc);
  // The first operand is the command.
  if (files.empty()) Fail(std::string("no command given\n\n") + kUsage, 2);
  if (files[0] == "help") {
    options.help = true;
    return options;
  }
  if (files[0] != "convert") Fail("unknown command '" + files[0] + "'; try 'ovxml --help'", 2);
  files.erase(files.begin());
  if (options.gzip && options.zlib) Fail("--gzip and --zlib cannot be combined", 2);
  if (options.fastInfoset && (options.utf16 || options.format || options.crlf))
    Fail("--utf16, --format and --crlf are for XML text output, not Fast Infoset", 2);
  if (files.size() != 2) Fail("convert needs exactly two file arguments, IN and OUT", 2);
  options.in = files[0];
  options.out = files[1];
  return options;
}

double Megabytes(std::uint64_t bytes) { return static_cast<double>(bytes) / (1024.0 * 1024.0); }

// Progress of the conversion on standard error, by input bytes read, for big inputs when it is a
// terminal.
class Progress {
 public:
  Progress() : m_enabled(isatty(STDERR_FILENO) != 0) {}
  ~Progress() { Clear(); }
  void Reading(std::uint64_t done, std::uint64_t total) {
    if (!m_enabled || (total < kProgressThreshold && done < kProgressThreshold)) return;
    // At most five lines a second: the terminal must not slow the conversion down.
    const auto now = std::chrono::steady_clock::now();
    if (m_shown && now - m_lastShown < std::chrono::milliseconds(200)) return;
    m_lastShown = now;
    if (total != 0) {
      Show("converting: %.1f of %.1f MB read (%d%%)", Megabytes(done), Megabytes(total),
           static_cast<int>(done * 100 / total));
    } else {
      Show("converting: %.1f MB read", Megabytes(done));
    }
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
  std::chrono::steady_clock::time_point m_lastShown;
};

// The output file: written under a temporary name beside it and renamed when the conversion has
// succeeded, so that a failed conversion leaves no output (and an existing file as it was). What
// is not a regular file (a device, a pipe) and standard output are written directly.
class OutputFile {
 public:
  explicit OutputFile(const std::string& name) : m_name(name) {
    if (name == "-") {
      m_file = stdout;
      return;
    }
    struct stat info;
    const bool direct = stat(name.c_str(), &info) == 0 && !S_ISREG(info.st_mode);
    m_path = direct ? name : name + ".ovxml-" + std::to_string(getpid()) + ".part";
    m_file = std::fopen(m_path.c_str(), "wb");
    if (m_file == nullptr) Fail("cannot create '" + name + "': " + std::strerror(errno));
    m_temporary = !direct;
  }
  ~OutputFile() {
    if (m_file != nullptr && m_file != stdout) std::fclose(m_file);
    if (m_temporary) std::remove(m_path.c_str());
  }
  std::FILE* Get() const { return m_file; }
  void Commit() {
    if (m_file == stdout) return;
    const int closed = std::fclose(m_file);
    m_file = nullptr;
    if (closed != 0) Fail("cannot write '" + m_name + "': " + std::strerror(errno));
    if (m_temporary && std::rename(m_path.c_str(), m_name.c_str()) != 0)
      Fail("cannot write '" + m_name + "': " + std::strerror(errno));
    m_temporary = false;
  }

 private:
  std::string m_name;
  std::string m_path;
  std::FILE* m_file = nullptr;
  bool m_temporary = false;
};

int Convert(const Options& options) {
  const auto start = std::chrono::steady_clock::now();
  Progress progress;

  const bool useStdin = options.in == "-";
  struct stat inInfo;
  if (!useStdin && stat(options.in.c_str(), &inInfo) == 0 && S_ISDIR(inInfo.st_mode))
    Fail("'" + options.in + "' is a directory, not a document");
  std::FILE* in = useStdin ? stdin : std::fopen(options.in.c_str(), "rb");
  if (in == nullptr) Fail("cannot open '" + options.in + "': " + std::strerror(errno));
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> inGuard(useStdin ? nullptr : in, &std::fclose);
  std::uint64_t total = 0;
  struct stat info;
  if (!useStdin && fstat(fileno(in), &info) == 0 && S_ISREG(info.st_mode))
    total = static_cast<std::uint64_t>(info.st_size);

  OutputFile out(options.out);
  std::vector<char> outBuffer(1 << 16);
  std::setvbuf(out.Get(), outBuffer.data(), _IOFBF, outBuffer.size());

  detail::CConvertOptions convert;
  convert.fastInfoset = options.fastInfoset;
  convert.compression = options.gzip   ? CompressionType_GZip
                        : options.zlib ? CompressionType_ZLib
                                       : CompressionType_None;
  convert.utf16 = options.utf16;
  convert.format = options.format;
  convert.crlf = options.crlf;
  convert.header = !options.noHeader;
  detail::CStreamConverter converter(convert);
  converter.SetProgress([&](std::uint64_t done) { progress.Reading(done, total); });
  detail::CStdioSource source(in, options.in);
  detail::CStdioSink sink(out.Get(), options.out);
  if (options.maxInflated != 0) SetMaxInflatedSize(options.maxInflated);
  detail::CConvertCounts counts;
  try {
    counts = converter.Convert(source, sink);
  } catch (const COvException& e) {
    // Like a compiler's messages: the place, then what is wrong there.
    const std::string name = useStdin ? "(standard input)" : options.in;
    const detail::CParseFailure& failure = converter.GetFailure();
    std::string message = e.GetFullMessage();
    if (failure.line != 0) {
      if (!failure.message.empty()) message = failure.message;
      Fail(FormatString("%s:%llu:%llu: ", name.c_str(),
                        static_cast<unsigned long long>(failure.line),
                        static_cast<unsigned long long>(failure.column)) +
               message,
           1, false);
    }
    if (message.find("beyond the limit") != std::string::npos)
      message += " (raise it with --max-inflated)";
    Fail(name + ": " + message, 1, false);
  }
  out.Commit();
  progress.Clear();

  if (options.quiet) return 0;
  const double seconds =
      std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  std::fprintf(stderr,
               "ovxml: %s -> %s: %llu elements, %llu attributes, %llu bytes in, %llu bytes out, "
               "%.3f s\n",
               options.in.c_str(), options.out.c_str(),
               static_cast<unsigned long long>(counts.elements),
               static_cast<unsigned long long>(counts.attributes),
               static_cast<unsigned long long>(counts.bytesIn),
               static_cast<unsigned long long>(counts.bytesOut), seconds);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  // The schema compiler has options of its own.
  if (argc > 1 && std::strcmp(argv[1], "generate") == 0) {
    return ovxml_generate::RunGenerate(argc - 1, argv + 1);
  }
  try {
    const Options options = ParseArguments(argc, argv);
    if (options.help) {
      std::fputs(kUsage, stdout);
      return 0;
    }
    if (options.version) {
      std::fputs(kVersion, stdout);
      return 0;
    }
    return Convert(options);
  } catch (const ToolError& e) {
    std::fprintf(stderr, "ovxml: %s%s\n", e.labelled ? "error: " : "", e.message.c_str());
    return e.status;
  } catch (const COvException& e) {
    std::fprintf(stderr, "ovxml: error: %s\n", e.GetFullMessage().c_str());
    return 1;
  } catch (const std::bad_alloc&) {
    std::fprintf(stderr, "ovxml: error: out of memory\n");
    return 1;
  }
}
