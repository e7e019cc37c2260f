// GoogleTest, and what it says of texts when they are not as expected.
#pragma once

#include <gmock/gmock.h>

namespace tolvanix::test {

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

}  // namespace tolvanix::test
