#pragma once

#include <memory>
#include <string>

/** A reference to an object of the array: what identifies it, and its name. */
class APIObjectInstance {
  public:
    APIObjectInstance() = default;
    APIObjectInstance(std::string id, std::string type, std::string name);
    /** The reference of an object of the array, from its attributes. */
    template <class Object>
    requires requires(const Object& object) { object.GetInstanceId(); }
    explicit APIObjectInstance(const Object& object)
        : APIObjectInstance(object.GetInstanceId(), object.GetObjectType(), object.GetInstanceName()) {}
    APIObjectInstance(const APIObjectInstance&) = default;
    APIObjectInstance& operator=(const APIObjectInstance&) = default;
    virtual ~APIObjectInstance();

    /** Id, type and name with a blank between them: a name may hold blanks, id and type may not. */
    std::string ToText() const;

    /** Null unless the text holds all three. */
    static std::unique_ptr<APIObjectInstance> FromText(const std::string& text);

    /** Whether it can be resolved: the name may be missing. */
    bool IsComplete() const { return !instanceId.empty() && !objectType.empty(); }

    std::string instanceId;
    std::string objectType;
    std::string instanceName;
};
