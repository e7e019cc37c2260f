#include "update/HwIDList.h"

#include <new>

#include "log/DebugWriter.h"

namespace tolvanix {

HwIDNode::HwIDNode(std::string_view id, std::int32_t status) : deviceStatus(status) {
  try {
    hardwareId = id;
  } catch (const std::bad_alloc&) {
    TRACE_ERROR("HwIDNode: Error: Unable to allocate char array to hold hardware ID string.\n");
  }
}

HwIDList::~HwIDList() {
  while (head != nullptr) {
    const std::unique_ptr<HwIDNode> node(head);
    head = node->next;
  }
}

const HwIDNode* HwIDList::AddHwIDNode(std::string_view hardwareId, std::int32_t deviceStatus) {
  try {
    auto node = std::make_unique<HwIDNode>(hardwareId, deviceStatus);
    firstOfId.try_emplace(node->hardwareId, node.get());
    (head == nullptr ? head : tail->next) = node.get();
    tail = node.release();
    return tail;
  } catch (const std::bad_alloc&) {
    TRACE_ERROR("AddHwIDNode: Error: Unable to create HwIDNode object.\n");
    return nullptr;
  }
}

const HwIDNode* HwIDList::findHwIDNode(std::string_view hardwareId) const {
  const auto found = firstOfId.find(hardwareId);
  return found != firstOfId.end() ? found->second : nullptr;
}

}  // namespace tolvanix
