#pragma once

#include <memory>
#include <string>

/** A reference to an object of the array: instance ID, type and name. */
class APIObjectInstance {
  public:
    APIObjectInstance() = default;
    APIObjectInstance(std::string id, std::string type, std::string name);
    /** Creates a reference to an object. */
    template <class Object>
    requires requires(const Object& object) { object.GetInstanceId(); }
    explicit APIObjectInstance(const Object& object)
        : APIObjectInstance(object.GetInstanceId(), object.GetObjectType(), object.GetInstanceName()) {}
    APIObjectInstance(const APIObjectInstance&) = default;
    APIObjectInstance& operator=(const APIObjectInstance&) = default;
    virtual ~APIObjectInstance();

    /** Returns instance ID, type and name, separated by spaces. Only the name may contain spaces. */
    std::string ToText() const;

    /** Returns null unless the string contains all three. */
    static std::unique_ptr<APIObjectInstance> FromText(const std::string& text);

    /** Returns whether the reference can be resolved, for which it needs no name. */
    bool IsComplete() const { return !instanceId.empty() && !objectType.empty(); }

    std::string instanceId;
    std::string objectType;
    std::string instanceName;
};
