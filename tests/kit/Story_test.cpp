#include "explain/Story.h"

#include <set>

#include "app/Status.h"
#include "install/ExecCmd.h"
#include "support/Matchers.h"
#include "text/Format.h"

namespace tolvanix::kit {
namespace {

TracedRun runWith(int deviceStatus, int exitCode) {
  TracedRun run;
  run.searches.emplace_back();
  run.searches.back().deviceStatus = deviceStatus;
  run.searches.back().exitCode = exitCode;
  run.exitCode = exitCode;
  return run;
}

// Also those that no run of the program ends with.
TEST(Story, EveryNumber_HasAnExplanationOfItsOwn) {
  std::set<std::string> explanations;
  for (int code = 0; code < kStatusCount; ++code) {
    TracedRun run;
    run.exitCode = code;
    const std::string story = storyOf(run, code);
    const std::size_t last = story.find(formatText("\nExit code %d: ", code));
    ASSERT_NE(last, std::string::npos) << story;
    EXPECT_EQ(story.find('\n', last + 1), story.size() - 1) << story;
    EXPECT_THAT(story, test::HasSubstr("\nWhat to do: "));
    explanations.insert(story.substr(story.find(':', last)));
  }
  EXPECT_EQ(explanations.size(), static_cast<std::size_t>(kStatusCount));
  const std::string unknown = storyOf(runWith(0, kStatusCount), kStatusCount);
  EXPECT_THAT(unknown, test::HasSubstr(": this is no exit code of the program.\n"));

  for (const int status : {-7, -6, -5, -4, -2, -1, 0, 1, 3, 4, 5, 6, 7, 8, 9}) {
    const std::string story = storyOf(runWith(status, kUpdateFailed), kUpdateFailed);
    EXPECT_THAT(story, test::HasSubstr(formatText("\n  Device status %d: ", status)));
    EXPECT_THAT(story, test::Not(test::HasSubstr("does not have")));
    EXPECT_THAT(story, test::HasSubstr("\n  What to do: "));
  }
}

TEST(Story, HelperBeyondItsTimeLimit_IsSaidToBeLeftRunning) {
  TracedRun run = runWith(8, kHelperFailed);
  TriedFile file;
  file.path = "C:\\p\\a.inf";
  file.helperResult = kExecTimedOut;
  file.status = 8;
  run.searches.back().files.push_back(file);
  EXPECT_NE(storyOf(run, kHelperFailed)
                .find("1. a.inf lists the ID, and a device with it is present; the helper program "
                      "had not ended after 300 seconds, its time limit, and was left running.\n"),
            std::string::npos);
}

}  // namespace
}  // namespace tolvanix::kit
