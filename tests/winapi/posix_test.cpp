// What the platform's documentation leaves to the system, or what its stand-in on Linux must see
// to: signals, file descriptors, names that no Windows computer has.
#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include <csignal>
#include <cstddef>
#include <fstream>
#include <thread>

#include "Child.h"
#include "support/Files.h"
#include "support/Patterns.h"
#include "winapi/StartUp.h"

namespace tolvanix::test {
namespace {

class PosixTest : public ::testing::Test {
 protected:
  PosixTest() {
    while (waitpid(-1, nullptr, 0) > 0) {  // what other tests left
    }
    winapi::startUp();
  }
  void TearDown() override { EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "a child is left"; }

  CurrentTempDir dir;
};

TEST_F(PosixTest, ChildEndedByASignal_HasExitCode128AndItsNumber) {
  for (const DWORD number : {6U, 9U, 15U}) {
    placeHelper(dir / "helper.exe", "raise " + std::to_string(number));
    EXPECT_EQ(run((dir / "helper.exe").string()), 128 + number);
  }
}

// From now on this thread and its children cannot ask whether a child has ended. To wait until it
// has stays possible: the leak check at the end of a program does.
void forbidPolling() {
  sock_filter filter[] = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_wait4, 0, 3),
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args) + 2 * sizeof(__u64)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, WNOHANG, 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EPERM),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  };
  const sock_fprog program{std::size(filter), filter};
  ASSERT_EQ(prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0), 0);
  ASSERT_EQ(prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program), 0);
}

TEST_F(PosixTest, ChildThatCannotBeWaitedFor_RunsToItsEndAndHasNoExitCode) {
  placeHelper(dir / "helper.exe", "wait go");
  std::thread([this] {
    forbidPolling();
    const Child child((dir / "helper.exe").string());
    DWORD exitCode = 0;
    EXPECT_EQ(WaitForSingleObject(child.process.get(), 0), WAIT_TIMEOUT);
    EXPECT_TRUE(GetExitCodeProcess(child.process.get(), &exitCode));
    EXPECT_EQ(exitCode, 259U);
    EXPECT_TRUE(releaseHelper(dir / "helper.exe", "go"));
    EXPECT_EQ(WaitForSingleObject(child.process.get(), 20000), WAIT_OBJECT_0);
    EXPECT_FALSE(GetExitCodeProcess(child.process.get(), &exitCode));
    EXPECT_EQ(GetLastError(), ERROR_GEN_FAILURE);
  }).join();
  EXPECT_GT(waitpid(-1, nullptr, 0), 0);
}

TEST_F(PosixTest, Child_HasOnlyTheStandardDescriptors) {
  writeFile(dir / "open.txt", "x");
  const std::ifstream open(dir / "open.txt");  // without close-on-exec
  ASSERT_EQ(run("/bin/sh -c \"ls /proc/self/fd >fds.txt\""), 0U);
  EXPECT_EQ(readFile(dir / "fds.txt"), "0\n1\n2\n3\n");  // 3: what lists them
}

TEST_F(PosixTest, Child_StartsWithoutOurTreatmentOfSignals) {
  EXPECT_EQ(std::raise(SIGPIPE), 0) << "a reader that has gone does not end the program";
  const auto before = std::signal(SIGUSR1, SIG_IGN);
  ASSERT_EQ(run("/bin/sh -c \"grep Sig[IB] /proc/self/status >signals.txt\""), 0U);
  std::signal(SIGUSR1, before);
  // The numbers above these are the C library's own.
  EXPECT_TRUE(isMatch(readFile(dir / "signals.txt"),
                      "^SigBlk:\\s*[0-9a-f]{8}[08]0000000\nSigIgn:\\s*[0-9a-f]{8}[08]0000000\n$"));
}

// Wine reads the class as if it were in an INI file.
TEST_F(PosixTest, Class_IsReadAsAllOfAnInfFile) {
  const std::string start = "[Version]\nSignature=\"$Windows NT$\" ; comment\n";
  const std::string guid = "ClassGuid={4D36E972-E325-11CE-BFC1-08002BE10318}";
  const std::string padding = "[Other]\n" + std::string(5000, ';') + "\n";
  const std::string rows[] = {
      start + "Class=Net ; comment\n" + guid + " ; comment\n[Other]\n",
      start + "Class=Net\n" + guid + " ; comment\n" + padding,
      start + "Class=Net\n[Other]\n[VERSION]\n" + guid + "\nClass=Other\n",
      start + "Class=Net\n" + padding + "[version]\n" + guid + "\n",
      start + "Class=%c%\nClassGuid=%g%\n" + padding + "[Strings]\nc=Net\ng=" + guid.substr(10),
      start + "Class=N\"et\", x\nClassGuid=\\\n" + guid.substr(10) + ",x\n" + padding,
      padding + start + "Class=Net\n" + guid,
  };
  for (const std::string& text : rows) {
    writeFile(dir / "test.inf", text);
    GUID found{};
    char name[64] = "";
    EXPECT_TRUE(SetupDiGetINFClassA(".\\test.inf", &found, name, sizeof name, nullptr)) << text;
    EXPECT_STREQ(name, "Net") << text;
    EXPECT_EQ(found.Data1, 0x4D36E972U) << text;
  }
}

TEST_F(PosixTest, NamesThatDifferInCaseAlone_TheExactOneIsFound) {
  writeFile(dir / "net.inf", "1");
  writeFile(dir / "NET.INF", "22");
  WIN32_FIND_DATAA data{};
  const FindOwner find(FindFirstFileA("net.inf", &data));
  EXPECT_STREQ(data.cFileName, "net.inf");
  EXPECT_FALSE(FindNextFileA(find.get(), &data));
}

TEST_F(PosixTest, HandleOfAnotherFamilyOrClosed_IsInvalid) {
  WIN32_FIND_DATAA data{};
  const HANDLE find = FindFirstFileA("*", &data);
  EXPECT_FALSE(CloseHandle(find));
  EXPECT_TRUE(FindClose(find));
  EXPECT_FALSE(FindClose(find));
  EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
  const HDEVINFO set = SetupDiCreateDeviceInfoList(nullptr, nullptr);
  EXPECT_EQ(static_cast<DWORD>(RegCloseKey(set)), ERROR_INVALID_HANDLE);
  EXPECT_TRUE(SetupDiDestroyDeviceInfoList(set));
  EXPECT_FALSE(SetupDiDestroyDeviceInfoList(set));
}

}  // namespace
}  // namespace tolvanix::test
