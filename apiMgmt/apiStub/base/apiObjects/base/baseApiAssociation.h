#pragma once

#include <map>
#include <span>
#include <string>

#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethod.h"

class INSTANCEIDApiAttribute;

/**
 * Navigation from an object to related ones: a call whose only argument is the object's instance ID. A class
 * names the object and the association.
 */
class BASEApiAssociation : public BASEApiMethod {
  public:
    BASEApiAssociation();
    explicit BASEApiAssociation(const std::map<std::string, std::string>& initial);
    /** Takes the instance ID of the object whose association is called. */
    explicit BASEApiAssociation(const std::string& instanceId);

    bool ChangesState() const override { return false; }
    int GetRequiredPrivilege() const override { return USER_PRIVILEGE_REPORTER; }
    const ATTRIBUTEList& GetAttributeList() const override;
    std::span<const std::string> GetRequiredNames() const override;
    void CheckRequiredAttributes() const override;

    static const INSTANCEIDApiAttribute& InstanceIdAttribute();

    void SetInstanceId(const std::string& id);
    std::string GetInstanceId() const;
};
