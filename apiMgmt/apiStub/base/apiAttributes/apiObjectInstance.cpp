#include "apiMgmt/apiStub/base/apiAttributes/apiObjectInstance.h"

#include <utility>
#include <vector>

#include "apiMgmt/common/utils/stringUtil.h"

APIObjectInstance::APIObjectInstance(std::string id, std::string type, std::string name)
    : instanceId(std::move(id)), objectType(std::move(type)), instanceName(std::move(name)) {}

APIObjectInstance::~APIObjectInstance() = default;

std::string APIObjectInstance::ToText() const {
    return instanceId + " " + objectType + " " + instanceName;
}

std::unique_ptr<APIObjectInstance> APIObjectInstance::FromText(const std::string& text) {
    std::vector<std::string> pieces;
    Split(text, " ", pieces, 3);
    if (pieces.size() < 3) {
        return nullptr;
    }
    return std::make_unique<APIObjectInstance>(pieces[0], pieces[1], pieces[2]);
}
