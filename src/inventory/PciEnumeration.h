// Enumeration of the PCI devices that are present in the computer.
#pragma once

#include "inventory/DeviceRecord.h"
#include "winapi/winapi.h"

namespace tolvanix {

// The PCI devices in the order in which the system enumerates its devices; of those alike in all
// identifiers and the place on the bus only the first. Null when there are none, or the system
// refuses. `machineName` null: this computer; `classGuid` null: no selection by class; `flags`:
// DIGCF_ values. The caller frees the list with FreeDeviceRecords. Throws nothing: when memory runs
// out there is no list, not a part of one, and the last error is ERROR_NOT_ENOUGH_MEMORY.
DeviceRecord* EnumeratePciDevices(const char* machineName, const GUID* classGuid, DWORD flags);

// Frees the record and all after it; null is accepted.
void FreeDeviceRecords(DeviceRecord* first);

}  // namespace tolvanix
