// Opens one INF file and tells whether any of its model lines carries a hardware ID.
#pragma once

#include <string>
#include <vector>

#include "text/SPString.h"
#include "winapi/Owner.h"

namespace tolvanix {

class CInf {
 public:
  CInf() = default;
  CInf(const CInf&) = delete;
  CInf& operator=(const CInf&) = delete;
  virtual ~CInf() = default;

  // Once for an object. The name may stand in double quotes. With flag 0 a name without a backslash
  // is one of the current directory. 0 or the platform's error code; one is given too for a file
  // that names no class.
  DWORD Open(const std::string& fileName, int flag);

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
  const SPString& getManufacturer() const { return manufacturer; }
  const SPString& getDescription() const { return description; }

 private:
  DWORD readClass();
  DWORD searchManufacturer(INFCONTEXT& line);
  DWORD searchModels(const std::string& section);
  DWORD readModel(INFCONTEXT& line);
  bool searchIds(INFCONTEXT& line);
  void readDescription();

  SPString path;
  SPString className;
  InfOwner infHandle;
  GUID classGuid{};
  SPString hardwareId;
  SPString manufacturer;
  SPString description;
  std::string wantedId;              // the hardware ID in upper case
  std::vector<std::string> lineIds;  // of one line at a time; their memory is used again
  INFCONTEXT unreadModel{};          // the model line that `description` is still to be read of
};

}  // namespace tolvanix
