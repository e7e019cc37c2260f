// Updates inside the test's process: many runs with little between them, and failing allocations.
#include <gtest/gtest.h>

#include <map>
#include <new>
#include <set>
#include <string>

#include "app/KivWrapper.h"
#include "support/AllocationFailure.h"
#include "support/Files.h"
#include "support/ResultDocument.h"
#include "support/ScopedRegistry.h"
#include "support/ValidationLibrary.h"
#include "update/HwIDList.h"

namespace tolvanix {
namespace {

using test::readText;
using test::ScopedAllocationFailure;

const std::string kDevice =
    R"(<Device vendorID="1DE4" deviceID="1" subDeviceID="2" subVendorID="3"/>)";
const std::string kFinding = R"(<Validation type="hard"/>)";

class UpdateInProcess : public ::testing::Test {
 protected:
  UpdateInProcess() {
    test::writeFile(folder / "package.xml", "<P/>");
    test::placeValidationLibrary(folder.path(), kDevice);
  }

  // A run with a trace.
  int run() {
    KivWrapper application;
    return start(application);
  }

  // A run whose execution is then repeated with that allocation of that size failing. -1 when it
  // ended with the exception of that.
  int executeAgain(std::size_t size, std::size_t number) {
    KivWrapper application;
    start(application);
    std::filesystem::remove("out.xml");
    std::filesystem::remove("trace.log");
    const ScopedAllocationFailure failure(size, number);
    int status = -1;
    try {
      status = application.PerformExecution(nullptr, 1);
    } catch (const std::bad_alloc&) {
      // It says so by its status.
    }
    happened = ScopedAllocationFailure::happened();
    return status;
  }

  static int start(KivWrapper& application) {
    static std::string arguments[] = {"tolvanix", "-u",   "-c", "-o",
                                      "out.xml",  "-d=2", "-e", "trace.log"};
    std::vector<char*> pointers;
    for (std::string& argument : arguments) pointers.push_back(argument.data());
    return application.runKiv(static_cast<int>(pointers.size()), pointers.data());
  }

  test::TempDir folder;
  test::ScopedCurrentDirectory inFolder{folder.path()};
  test::ScopedRegistry registry{{test::deviceKey(
      "PCI\\VEN_1DE4&DEV_0001\\1", {test::listOf("HardwareID", {"PCI\\VEN_1DE4&DEV_0001"})})}};
  bool happened = false;
};

TEST_F(UpdateInProcess, DocumentCutAnywhere_CountsWhatIsWhole) {
  const std::string document = "<V>" + kDevice + kFinding + "</V>";
  for (std::size_t size = 0; size <= document.size(); ++size) {
    test::writeFile(folder / "answer.txt", document.substr(0, size));
    const bool hasDevice = size >= 3 + kDevice.size();
    const bool hasFinding = size >= 3 + kDevice.size() + kFinding.size();
    EXPECT_EQ(run(), hasFinding ? 21 : hasDevice ? 32 : 0) << size;
    EXPECT_EQ(test::schemaErrors(readText("out.xml")), "");
  }
}

TEST_F(UpdateInProcess, Library_IsUnloadedWithTheApplicationObject) {
  run();
  EXPECT_EQ(readText("calls.txt"), "validate\nfree\nunloaded\n");
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
      traces[status].insert(std::filesystem::exists("trace.log") ? readText("trace.log") : "");
      EXPECT_EQ(test::schemaErrors(readText("out.xml")), "");
    }
  }
  using Texts = std::set<std::string>;
  EXPECT_EQ(traces[28], Texts{"PerformExecution: Error: Unable to create HwIDList object.\n"});
  EXPECT_EQ(traces[29],
            Texts{"AddHwIDNode: Error: Unable to create HwIDNode object.\n"
                  "PerformExecution: Error: Failed to add new hardware ID node to the list.\n"});
  EXPECT_EQ(
      traces[32],
      (Texts{"", "HwIDNode: Error: Unable to allocate char array to hold hardware ID string.\n"}));
}

TEST(HwIDList, SameIdTwice_TheFirstIsFound) {
  HwIDList list;
  EXPECT_EQ(list.findHwIDNode("PCI\\A"), nullptr);
  const HwIDNode* const first = list.AddHwIDNode("PCI\\A", -2);
  list.AddHwIDNode("PCI\\A", 5);
  EXPECT_EQ(list.findHwIDNode("PCI\\A"), first);
  EXPECT_EQ(first->getDeviceStatus(), -2);
  EXPECT_EQ(list.findHwIDNode("pci\\a"), nullptr);
}

}  // namespace
}  // namespace tolvanix
