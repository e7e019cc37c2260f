#include "app/KivWrapper.h"

#include <gtest/gtest.h>

#include <map>

namespace tolvanix {
namespace {

TEST(KivWrapper, MapDeviceStatus_KnowsItsTableAndCallsTheRestUnspecified) {
  const std::map<int, int> table = {{-7, 33}, {-6, 32}, {-5, 31}, {-4, 30}, {-2, 0},
                                    {0, 0},   {3, 34},  {4, 35},  {5, 36},  {6, 37},
                                    {7, 38},  {8, 39},  {9, 40}};
  for (int status = -20; status <= 20; ++status) {
    const auto entry = table.find(status);
    EXPECT_EQ(KivWrapper::mapDeviceStatus(status), entry != table.end() ? entry->second : 27)
        << status;
  }
}

}  // namespace
}  // namespace tolvanix
