// Updates inside the test's process: many runs with little between them.
#include <gtest/gtest.h>

#include "app/KivWrapper.h"
#include "support/Files.h"
#include "support/ResultDocument.h"
#include "support/Trace.h"

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

  CurrentTempDir folder;
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

}  // namespace
}  // namespace tolvanix::test
