// The one fuzzing program: the name by which it is called says which target it runs.
#include "fuzz.h"

#include <fcntl.h>
#include <libxml/parser.h>
#include <libxml/xmlschemas.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iostream>

#include "app/Status.h"
#include "winapi/posix/machine/PresentedMachine.h"

namespace tolvanix::fuzz {

namespace {

constexpr struct {
  std::string_view name;
  void (*run)(std::string_view input);
} kTargets[] = {
    {"fuzz_inf", inf},
    {"fuzz_registry_export", registryExport},
    {"fuzz_inventory", inventory},
    {"fuzz_match", match},
    {"fuzz_execution", execution},
    {"fuzz_query", query},
    {"fuzz_text", text},
};
void (*chosen)(std::string_view input) = nullptr;

class ScratchFolder {
 public:
  ScratchFolder() {
    const char* const parent = std::getenv("TMPDIR");
    path = std::string(parent != nullptr ? parent : "/dev/shm") + "/tolvanix_fuzz.XXXXXX";
    if (mkdtemp(path.data()) == nullptr)
      reportFinding("no folder for the target's files", path, "");
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder() {
    std::error_code error;
    std::filesystem::remove_all(path, error);
  }

  std::string path;
};

const char* textOf(const xmlChar* text) {
  return text != nullptr ? reinterpret_cast<const char*>(text) : "";
}

Element elementOf(const xmlNode& node) {
  Element element;
  element.name = textOf(node.name);
  for (const xmlAttr* attribute = node.properties; attribute != nullptr;
       attribute = attribute->next) {
    // No entities are left in it: the parser replaces them.
    const xmlNode* const value = attribute->children;
    element.attributes[textOf(attribute->name)] = value != nullptr ? textOf(value->content) : "";
  }
  for (const xmlNode* child = node.children; child != nullptr; child = child->next) {
    if (child->type == XML_ELEMENT_NODE) {
      element.children.push_back(elementOf(*child));
    } else {
      element.content += textOf(child->content);
    }
  }
  return element;
}

bool isValid(xmlDoc* document) {
  static xmlSchema* const schema = [] {
    const std::unique_ptr<xmlSchemaParserCtxt, decltype(&xmlSchemaFreeParserCtxt)> parser(
        xmlSchemaNewParserCtxt(RESULT_SCHEMA), xmlSchemaFreeParserCtxt);
    return xmlSchemaParse(parser.get());
  }();
  static xmlSchemaValidCtxt* const validation = xmlSchemaNewValidCtxt(schema);
  return xmlSchemaValidateDoc(validation, document) == 0;
}

}  // namespace

std::string show(std::string_view text) {
  std::string shown = "\"";
  for (const char c : text) {
    char code[8] = "";
    std::snprintf(code, sizeof code, "\\x%02X", static_cast<unsigned char>(c));
    shown += c >= ' ' && c <= '~' ? std::string(1, c) : code;
  }
  return shown + '"';
}

std::string show(std::u16string_view text) {
  std::string shown = "u\"";
  for (const char16_t unit : text) {
    char code[8] = "";
    std::snprintf(code, sizeof code, "\\u%04X", unit);
    shown += unit >= ' ' && unit <= '~' ? std::string(1, static_cast<char>(unit)) : code;
  }
  return shown + '"';
}

std::string show(const Element& element) {
  return '<' + element.name + ' ' + show(element.attributes) + ' ' + show(element.content) + ' ' +
         show(element.children) + '>';
}

void reportFinding(const char* what, const std::string& found, const std::string& expected) {
  std::cerr << "FINDING: " << what << "\n  found    " << found << "\n  expected " << expected
            << std::endl;
  std::abort();
}

std::string_view takePart(std::string_view& rest, char separator) {
  const std::string_view part = rest.substr(0, rest.find(separator));
  rest.remove_prefix(part.size() < rest.size() ? part.size() + 1 : part.size());
  return part;
}

MemoryFile::MemoryFile()
    : descriptor(memfd_create("fuzz", MFD_CLOEXEC)),
      path("/proc/self/fd/" + std::to_string(descriptor)) {}

MemoryFile::~MemoryFile() {
  close(descriptor);
}

void MemoryFile::write(std::string_view bytes) const {
  const bool written =
      ftruncate(descriptor, 0) == 0 &&
      pwrite(descriptor, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size());
  if (!written) reportFinding("no memory for a file", "", "");
}

std::string MemoryFile::platformName() const {
  std::string name = path;
  for (char& c : name) c = c == '/' ? '\\' : c;
  return name;
}

std::string takeOutput() {
  std::string bytes(static_cast<std::size_t>(lseek(STDOUT_FILENO, 0, SEEK_END)), '\0');
  const bool taken =
      pread(STDOUT_FILENO, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()) &&
      ftruncate(STDOUT_FILENO, 0) == 0 && lseek(STDOUT_FILENO, 0, SEEK_SET) == 0;
  if (!taken) reportFinding("no standard output", "", "");
  return bytes;
}

InScratchFolder::InScratchFolder() : before(open(".", O_PATH | O_DIRECTORY | O_CLOEXEC)) {
  if (chdir(scratchFolder().c_str()) != 0) reportFinding("no way to the folder", "", "");
}

InScratchFolder::~InScratchFolder() {
  if (fchdir(before) != 0) reportFinding("no way back from the folder", "", "");
  close(before);
}

const std::string& scratchFolder() {
  static const ScratchFolder folder;
  return folder.path;
}

void writeFile(const std::string& path, std::string_view bytes) {
  std::FILE* const file = std::fopen(path.c_str(), "wb");
  if (file == nullptr) return;  // what the computer cannot hold is not there
  std::fwrite(bytes.data(), 1, bytes.size(), file);
  std::fclose(file);
}

std::optional<winapi::RegistryValue> PlainMachine::deviceProperty(std::size_t device,
                                                                  DWORD property) const {
  if (property != SPDRP_HARDWAREID) return std::nullopt;
  return winapi::RegistryValue{REG_MULTI_SZ, ids[device] + std::string(2, '\0')};
}

Element readDocument(const std::string& document) {
  const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> parsed(
      xmlReadMemory(document.data(), static_cast<int>(document.size()), "result.xml", nullptr,
                    XML_PARSE_NOENT | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_HUGE),
      xmlFreeDoc);
  if (parsed == nullptr) reportFinding("the document is not well-formed", document, "");
  if (!isValid(parsed.get())) reportFinding("the document is not valid", document, "");
  return elementOf(*xmlDocGetRootElement(parsed.get()));
}

Element statusElement(int status) {
  const Element message = {"Message",
                           {{"id", std::to_string(status)}},
                           kStatusTexts[static_cast<std::size_t>(status)],
                           {}};
  return {"SPStatus", {{"result", status == kSuccess ? "true" : "false"}}, "", {message}};
}

std::string attributeValue(std::u16string_view text) {
  std::string value;
  for (const char c : naive::xmlUtf8(text)) {
    if (c == '\n' && value.ends_with('\r')) value.pop_back();  // a line end is one character
    value += c;
  }
  for (char& c : value) c = c == '\t' || c == '\n' || c == '\r' ? ' ' : c;
  return value;
}

}  // namespace tolvanix::fuzz

using namespace tolvanix;

// Keeping little of what is freed, and of who allocated it, saves a third of the time. A finding
// shows more with ASAN_OPTIONS=malloc_context_size=30.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the sanitizer asks for it by this name
extern "C" const char* __asan_default_options() {
  return "quarantine_size_mb=1:malloc_context_size=1";
}

extern "C" int LLVMFuzzerInitialize(int* /*count*/, char*** arguments) {
  const auto name = std::filesystem::path((*arguments)[0]).filename().string();
  for (const auto& target : fuzz::kTargets) {
    if (target.name == name) fuzz::chosen = target.run;
  }
  if (fuzz::chosen == nullptr) {
    std::cerr << name << ": call a target by its name, such as fuzz_inf" << std::endl;
    std::exit(2);
  }
  // What the program has to say of strange files; the fuzzer and findings have the stream itself.
  stderr = std::fopen("/dev/null", "w");
  dup2(memfd_create("output", MFD_CLOEXEC), STDOUT_FILENO);  // the fuzzer does not use it
  winapi::exchangePresentedMachine(
      std::make_unique<fuzz::PlainMachine>(std::vector<std::string>()));
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  fuzz::chosen({reinterpret_cast<const char*>(bytes), size});
  return 0;
}
