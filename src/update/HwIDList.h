// The hardware IDs that one execution has handled, with their outcomes, in that order.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

namespace tolvanix {

class HwIDNode {
 public:
  // A copy of the ID that cannot be allocated leaves the node's ID empty.
  HwIDNode(std::string_view id, std::int32_t status);
  HwIDNode(const HwIDNode&) = delete;
  HwIDNode& operator=(const HwIDNode&) = delete;
  virtual ~HwIDNode() = default;

  const std::string& getHardwareId() const { return hardwareId; }
  std::int32_t getDeviceStatus() const { return deviceStatus; }

 private:
  friend class HwIDList;

  std::string hardwareId;
  std::int32_t deviceStatus;  // a DeviceStatus
  HwIDNode* next = nullptr;   // owned by the list
};

class HwIDList {
 public:
  HwIDList() = default;
  HwIDList(const HwIDList&) = delete;
  HwIDList& operator=(const HwIDList&) = delete;
  virtual ~HwIDList();

  // The new last node; null when it could not be created.
  const HwIDNode* AddHwIDNode(std::string_view hardwareId, std::int32_t deviceStatus);

  // The first node of exactly that ID; null when there is none.
  const HwIDNode* findHwIDNode(std::string_view hardwareId) const;

 private:
  HwIDNode* head = nullptr;
  HwIDNode* tail = nullptr;
  // The first node of each ID, so that a package of many devices is looked up in linear time.
  std::unordered_map<std::string_view, const HwIDNode*> firstOfId;
};

}  // namespace tolvanix
