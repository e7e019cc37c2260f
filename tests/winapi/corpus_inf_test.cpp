// Real INF files, where the environment names a folder of them in TOLVANIX_INF_CORPUS: the reader
// must find as many hardware IDs in each as another reader, tests/support/count_inf_ids.py.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <string>

#include "winapi/Owner.h"

namespace tolvanix {
namespace {

namespace fs = std::filesystem;

std::string field(INFCONTEXT& line, DWORD index) {
  char text[4096] = "";
  SetupGetStringFieldA(&line, index, text, sizeof text, nullptr);
  return text;
}

unsigned countIdsOfSection(HINF inf, const std::string& section) {
  unsigned count = 0;
  INFCONTEXT line{};
  BOOL found = SetupFindFirstLineA(inf, section.c_str(), nullptr, &line);
  while (found != FALSE && SetupGetStringFieldA(&line, 0, nullptr, 0, nullptr) != FALSE) {
    count += SetupGetFieldCount(&line) - 1;
    found = SetupFindNextLine(&line, &line);
  }
  return count;
}

unsigned countIds(HINF inf) {
  unsigned count = 0;
  INFCONTEXT line{};
  BOOL found = SetupFindFirstLineA(inf, "Manufacturer", nullptr, &line);
  while (found != FALSE && SetupGetStringFieldA(&line, 0, nullptr, 0, nullptr) != FALSE) {
    const std::string models = field(line, 1);
    count += countIdsOfSection(inf, models);
    for (DWORD i = 2; i <= SetupGetFieldCount(&line); ++i) {
      count += countIdsOfSection(inf, models + "." + field(line, i));
    }
    found = SetupFindNextLine(&line, &line);
  }
  return count;
}

std::map<std::string, unsigned> countsOfOtherReader(const fs::path& folder) {
  const std::string command = "python3 '" COUNT_INF_IDS "' '" + folder.string() + "'";
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(popen(command.c_str(), "r"), pclose);
  std::map<std::string, unsigned> counts;
  char name[300];
  unsigned count = 0;
  while (pipe && std::fscanf(pipe.get(), " %299[^\t]\t%u", name, &count) == 2) {
    counts[name] = count;
  }
  return counts;
}

TEST(CorpusInf, EveryFile_GivesAsManyIdsAsAnotherReaderFinds) {
  const char* const given = std::getenv("TOLVANIX_INF_CORPUS");
  if (given == nullptr || !fs::is_directory(given)) GTEST_SKIP() << "no folder of INF files";
  const fs::path folder = given;
  const auto expected = countsOfOtherReader(folder);
  ASSERT_FALSE(expected.empty());
  unsigned read = 0;
  for (const auto& [name, ids] : expected) {
    const fs::path file = folder / name;
    const InfOwner inf(SetupOpenInfFileA(file.c_str(), nullptr, INF_STYLE_WIN4, nullptr));
    if (!inf) {
      std::printf("%s cannot be opened: 0x%X\n", name.c_str(), GetLastError());
      continue;
    }
    ++read;
    EXPECT_EQ(countIds(inf.get()), ids) << name;
  }
  EXPECT_GT(read, expected.size() * 9 / 10);
}

}  // namespace
}  // namespace tolvanix
