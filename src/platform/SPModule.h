// A file of the program's surroundings, by its path.
#pragma once

#include "text/SPString.h"

namespace tolvanix {

class SPModule {
 public:
  explicit SPModule(const char* filePath) : path(filePath) {}
  SPModule(const SPModule&) = default;
  SPModule& operator=(const SPModule&) = default;
  virtual ~SPModule() = default;

 protected:
  SPString path;
};

}  // namespace tolvanix
