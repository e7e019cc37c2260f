// Opens one INF file and says whether any of its model lines carries a hardware ID.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "install/WantedId.h"
#include "text/SPString.h"
#include "winapi/Owner.h"

namespace tolvanix {

// The key of an INF line, whose text is put together when it is asked for: of most lines the trace
// alone wants it, and its strings would take most of the search's time (100 MB of INF files: 85 ms;
// all read, 400 ms). The file must be open then.
class LineKey {
 public:
  // The key of that line from now on. 0, or the platform's error code when the line has none.
  DWORD take(const INFCONTEXT& line);

  const SPString& get();

 private:
  INFCONTEXT source{};
  bool isRead = true;
  SPString text;
};

class CInf {
 public:
  CInf() = default;
  CInf(const CInf&) = delete;
  CInf& operator=(const CInf&) = delete;
  virtual ~CInf() = default;

  // Once for an object. The name may be in double quotes. With flag 0 a name without a backslash
  // is one of the current directory. 0 or the platform's error code; one is given too for a file
  // that names no class, and when there is not enough memory.
  DWORD Open(std::string_view fileName, int flag);

  // Searches every models section for `hardwareId`, which must be set. 0 when a line carries it,
  // ERROR_NO_MORE_ITEMS when none does, or the error code of the platform that ended the search.
  DWORD EnumManufacturers();

  // The same for the models section of that name alone.
  DWORD EnumDevices(const std::string& section);

  const SPString& getPath() const { return path; }  // as opened
  const SPString& getClassName() const { return className; }
  const GUID& getClassGuid() const { return classGuid; }
  const SPString& getHardwareId() const { return hardwareId; }
  void setHardwareId(const std::string& id) { hardwareId = id; }
  // Of the line that matched, else of the last one read.
  const SPString& getManufacturer() { return manufacturer.get(); }
  const SPString& getDescription() { return description.get(); }

 private:
  DWORD readClass();
  DWORD searchManufacturer(INFCONTEXT& line);
  DWORD searchLine(INFCONTEXT& line);
  std::optional<unsigned> findId(INFCONTEXT& line, DWORD fieldCount);

  SPString path;
  SPString className;
  InfOwner infHandle;
  GUID classGuid{};
  SPString hardwareId;
  LineKey manufacturer;
  LineKey description;
  WantedId wantedId;
  std::string listedId;  // kept for its memory
};

}  // namespace tolvanix
