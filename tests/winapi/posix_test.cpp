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

// A new use of the platform shows at once when Linux does not offer it.
TEST_F(PosixTest, UseThatTheProgramDoesNotMake_IsRefused) {
  char text[9] = "";
  DWORD size = sizeof text;
  int any = 0;
  HKEY key = nullptr;
  const auto openKey = [&](HKEY root, DWORD options, REGSAM access) {
    SetLastError(static_cast<DWORD>(RegOpenKeyExA(root, "", options, access, &key)));
    return GetLastError();
  };
  EXPECT_EQ(openKey(&any, 0, KEY_QUERY_VALUE), ERROR_INVALID_HANDLE);
  EXPECT_EQ(openKey(HKEY_LOCAL_MACHINE, 1, KEY_QUERY_VALUE), ERROR_INVALID_PARAMETER);
  EXPECT_EQ(openKey(HKEY_LOCAL_MACHINE, 0, 0xF003F), ERROR_ACCESS_DENIED);

  const auto isRefused = [](bool done, DWORD error) { return !done && GetLastError() == error; };
  const auto select = [](const char* enumerator, const char* machine, void* reserved) {
    return SetupDiGetClassDevsExA(nullptr, enumerator, nullptr, DIGCF_PRESENT | DIGCF_ALLCLASSES,
                                  nullptr, machine, reserved) != INVALID_HANDLE_VALUE;
  };
  EXPECT_TRUE(isRefused(select("USB", nullptr, nullptr), ERROR_CALL_NOT_IMPLEMENTED));
  EXPECT_TRUE(isRefused(select(nullptr, "other", nullptr), ERROR_INVALID_MACHINENAME));
  EXPECT_TRUE(isRefused(select(nullptr, nullptr, &any), ERROR_INVALID_PARAMETER));
  const HDEVINFO set = SetupDiCreateDeviceInfoList(nullptr, nullptr);
  const auto hasProperty = [&](SP_DEVINFO_DATA device, DWORD room) {
    return SetupDiGetDeviceRegistryPropertyA(set, &device, SPDRP_HARDWAREID, nullptr, nullptr, room,
                                             nullptr) != FALSE;
  };
  SP_DEVINFO_DATA device{sizeof device, {}, 1, 0};
  EXPECT_TRUE(isRefused(hasProperty(device, 0), ERROR_INVALID_PARAMETER)) << "not in the set";
  EXPECT_TRUE(isRefused(hasProperty(device, 1), ERROR_INVALID_PARAMETER)) << "no buffer";
  EXPECT_TRUE(isRefused(hasProperty({}, 0), ERROR_INVALID_USER_BUFFER));
  EXPECT_TRUE(isRefused(SetupDiEnumDeviceInfo(set, 0, nullptr), ERROR_INVALID_PARAMETER));
  EXPECT_TRUE(isRefused(SetupDiDestroyDriverInfoList(set, &device, 1), ERROR_INVALID_PARAMETER));
  SetupDiDestroyDeviceInfoList(set);

  writeFile(dir / "a.inf", "[Version]\nSignature=\"$Windows NT$\"\n");
  const auto opens = [](const char* name, const char* infClass, DWORD style) {
    return SetupOpenInfFileA(name, infClass, style, nullptr) != INVALID_HANDLE_VALUE;
  };
  EXPECT_TRUE(isRefused(opens(nullptr, nullptr, INF_STYLE_WIN4), ERROR_INVALID_PARAMETER));
  EXPECT_TRUE(isRefused(opens(".\\a.inf", "Net", INF_STYLE_WIN4), ERROR_INVALID_PARAMETER));
  EXPECT_TRUE(isRefused(opens(".\\a.inf", nullptr, 1), ERROR_INVALID_PARAMETER));
  const HINF inf = SetupOpenInfFileA(".\\a.inf", nullptr, INF_STYLE_WIN4, nullptr);
  INFCONTEXT line{};
  EXPECT_FALSE(SetupFindFirstLineA(inf, "Version", "Class", &line)) << "by key";
  ASSERT_TRUE(SetupFindFirstLineA(inf, "Version", nullptr, &line));
  line.Line = 7;
  EXPECT_TRUE(isRefused(SetupFindNextLine(&line, &line), ERROR_INVALID_PARAMETER)) << "from none";
  SetupCloseInfFile(inf);

  HANDLE read = nullptr;
  HANDLE write = nullptr;
  ASSERT_TRUE(CreatePipe(&read, &write, nullptr, 0));
  const HANDLE self = GetCurrentProcess();
  const auto duplicates = [&](HANDLE from, HANDLE to, DWORD options) {
    return DuplicateHandle(from, read, to, &read, 0, FALSE, options) != FALSE;
  };
  EXPECT_TRUE(isRefused(duplicates(&any, self, DUPLICATE_SAME_ACCESS), ERROR_NOT_SUPPORTED));
  EXPECT_TRUE(isRefused(duplicates(self, &any, DUPLICATE_SAME_ACCESS), ERROR_NOT_SUPPORTED));
  EXPECT_TRUE(isRefused(duplicates(self, self, 0), ERROR_NOT_SUPPORTED));
  EXPECT_TRUE(isRefused(SetHandleInformation(read, 2, 2), ERROR_NOT_SUPPORTED));
  EXPECT_TRUE(isRefused(ReadFile(read, text, 1, &size, &any), ERROR_NOT_SUPPORTED));
  EXPECT_TRUE(isRefused(WriteFile(write, text, 1, &size, &any), ERROR_NOT_SUPPORTED));
  EXPECT_TRUE(
      isRefused(PeekNamedPipe(read, text, 1, nullptr, &size, nullptr), ERROR_NOT_SUPPORTED));
  CloseHandle(read);
  CloseHandle(write);
  PROCESS_INFORMATION started{};
  const auto creates = [&](const char* program, char* command, BOOL inherits, DWORD flags) {
    return CreateProcessA(program, command, nullptr, nullptr, inherits, flags, nullptr, nullptr,
                          nullptr, &started) != FALSE;
  };
  EXPECT_TRUE(isRefused(creates("/bin/sh", text, TRUE, 0), ERROR_NOT_SUPPORTED));
  EXPECT_TRUE(isRefused(creates(nullptr, text, FALSE, 0), ERROR_NOT_SUPPORTED));
  EXPECT_TRUE(isRefused(creates(nullptr, text, TRUE, 4), ERROR_NOT_SUPPORTED)) << "suspended";
  EXPECT_TRUE(isRefused(creates(nullptr, nullptr, TRUE, 0), ERROR_INVALID_PARAMETER));
}

}  // namespace
}  // namespace tolvanix::test
