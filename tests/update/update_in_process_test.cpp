// Updates inside the test's process: many runs with little between them, and failing allocations.
#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <new>
#include <set>
#include <string>

#include "app/KivWrapper.h"
#include "support/Files.h"
#include "support/ResultDocument.h"
#include "support/Trace.h"
#include "update/HwIDList.h"

namespace {

// The allocation that is to fail, counted from 1 among those of that size; 0 for none.
std::size_t failingSize = 0;
std::size_t failingNumber = 0;

}  // namespace

// The program-wide allocation functions of the tests. Inlined they look mismatched to the compiler.
[[gnu::noinline]] void* operator new(std::size_t size,
                                     const std::nothrow_t& /*selector*/) noexcept {
  if (failingNumber != 0 && size == failingSize && --failingNumber == 0) return nullptr;
  return std::malloc(size != 0 ? size : 1);
}
[[gnu::noinline]] void* operator new(std::size_t size) {
  void* const memory = operator new(size, std::nothrow);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
  std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t /*size*/) noexcept {
  std::free(memory);
}

namespace tolvanix::test {
namespace {

const std::string kDevice =
    R"(<Device vendorID="1DE4" deviceID="1" subDeviceID="2" subVendorID="3"/>)";

class UpdateInProcess : public ::testing::Test {
 protected:
  UpdateInProcess() {
    writeFile(folder / "package.xml", "<P/>");
    placeValidationLibrary(folder.path(), kDevice);
  }

  static int run(KivWrapper& application) {
    static std::string texts[] = {"tolvanix", "-u",   "-c", "-o",
                                  "out.xml",  "-d=4", "-e", "trace.log"};
    char* arguments[std::size(texts)];
    for (std::size_t i = 0; i < std::size(texts); ++i) arguments[i] = texts[i].data();
    return application.runKiv(static_cast<std::int32_t>(std::size(texts)), arguments);
  }

  // A run whose execution is then repeated with that allocation failing. -1 when it ended with the
  // exception of that.
  int executeAgain(std::size_t size, std::size_t number) {
    KivWrapper application;
    run(application);
    std::filesystem::remove("out.xml");
    std::filesystem::remove("trace.log");
    failingSize = size;
    failingNumber = number;
    int status = -1;
    try {
      status = application.PerformExecution(nullptr, 1);
    } catch (const std::bad_alloc&) {  // it says so by its status
    }
    happened = failingNumber == 0;
    failingNumber = 0;
    return status;
  }

  CurrentTempDir folder;
  bool happened = true;  // whether there were that many allocations
};

TEST_F(UpdateInProcess, DocumentCutAnywhere_CountsWhatIsWhole) {
  const std::string document = "<V>" + kDevice + R"(<Validation type="hard"/></V>)";
  for (std::size_t size = 0; size <= document.size(); ++size) {
    writeFile(folder / "answer.txt", document.substr(0, size));
    const bool hasDevice = size >= 3 + kDevice.size();
    const bool hasFinding = size >= document.size() - 4;
    KivWrapper application;
    EXPECT_EQ(run(application), hasFinding ? 21 : hasDevice ? 32 : 0) << size;
    EXPECT_EQ(schemaErrors(readText("out.xml")), "");
  }
  for (const char* const nothing : {"no document", "<Devices/>", "<Device", "\xFF\xFE<", "<<<<"}) {
    writeFile(folder / "answer.txt", nothing);
    KivWrapper application;
    EXPECT_EQ(run(application), 0);
    EXPECT_EQ(readText("out.xml"), executionDocument(""));
  }
}

TEST_F(UpdateInProcess, PackageThatIsGone_IsRefused) {
  KivWrapper application;
  run(application);
  EXPECT_EQ(application.PerformValidation("en", "none.xml"), 21);
  EXPECT_TRUE(readText("trace.log")
                  .ends_with("PerformValidation: Caught exception. e.getErrorNum() = 6047\n"));
}

// Each allocation of the list's, of a node's and of its text's size fails once.
TEST_F(UpdateInProcess, AllocationFails_StatusTellsAndTheLibraryGetsItsDocumentBack) {
  const std::string hardwareId = "PCI\\VEN_1DE4&DEV_0001&SUBSYS_00020003";
  std::map<int, std::set<std::string>> traces;
  for (const std::size_t size : {sizeof(HwIDList), sizeof(HwIDNode), hardwareId.size() + 1}) {
    happened = true;
    for (std::size_t number = 1; happened; ++number) {
      std::filesystem::remove("calls.txt");
      const int status = executeAgain(size, number);
      EXPECT_EQ(readText("calls.txt"), "validate\nfree\nunloaded\n");
      if (status < 0) continue;
      traces[status].insert(
          only(readText("trace.log"),
               {"PerformExecution: Error", "PerformExecution: Caught", "AddHwIDNode", "HwIDNode"}));
      EXPECT_EQ(schemaErrors(readText("out.xml")), "");
    }
  }
  const std::map<int, std::set<std::string>> expected = {
      {28,
       {"PerformExecution: Error: Unable to create HwIDList object.\n"
        "PerformExecution: Caught exception. e.getErrorNum() = 28\n"}},
      {29,
       {"AddHwIDNode: Error: Unable to create HwIDNode object.\n"
        "PerformExecution: Error: Failed to add new hardware ID node to the list.\n"
        "PerformExecution: Caught exception. e.getErrorNum() = 29\n"}},
      {32, {"", "HwIDNode: Error: Unable to allocate char array to hold hardware ID string.\n"}},
  };
  for (const auto& [status, texts] : expected) EXPECT_EQ(traces[status], texts) << status;
}

}  // namespace
}  // namespace tolvanix::test
