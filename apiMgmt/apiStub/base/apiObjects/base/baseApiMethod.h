#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

class BASEApiAttribute;

/** Who may call a method. */
enum UserPrivilege : int {
    USER_PRIVILEGE_ADMIN = 1,
    USER_PRIVILEGE_VOLUME_MANAGER = 2,
    USER_PRIVILEGE_REPORTER = 3,
};

/**
 * One call of the API manager: a class names the object and the command, an instance holds the arguments and
 * renders them. Construct, set attributes, GenerateXml, delete; an instance belongs to one thread.
 */
class BASEApiMethod {
  public:
    virtual ~BASEApiMethod() = default;
    BASEApiMethod(const BASEApiMethod&) = delete;
    BASEApiMethod& operator=(const BASEApiMethod&) = delete;

    virtual const std::string& GetCommandName() const = 0;
    virtual const std::string& GetObjectName() const = 0;

    /** Whether a call changes the array. */
    virtual bool ChangesState() const { return true; }

    /** The least UserPrivilege that the API manager asks for. */
    virtual int GetRequiredPrivilege() const { return USER_PRIVILEGE_REPORTER; }

    /** The descriptors of the arguments; they live until the process exits. */
    virtual const std::vector<BASEApiAttribute*>& GetAttributeList() const;

    /**
     * The call as an <ApiMethod> element, arguments in the byte order of their names. Values are written as
     * they stand: some are markup, so escaping is for those who set them. async: the manager is to answer
     * before the work is done. xmlObjects: objects of the answer come as XML, else as CSV.
     */
    virtual std::string GenerateXml(bool async, bool xmlObjects) const;

    /** Throws when a required argument is missing. */
    virtual void CheckRequiredAttributes() const {}

    /** Throws when the call makes no sense in the present state. */
    virtual void CheckState() const {}

    /** An empty name is ignored. */
    void SetAttribute(const std::string& name, const std::string& text);

    /** Empty when the attribute is absent. */
    std::string GetAttribute(std::string_view name) const;

    bool HasAttribute(std::string_view name) const;

    /** Asks for the objects in their lite form. */
    void SetLiteObj();
    bool IsLiteObj() const;

  protected:
    explicit BASEApiMethod(bool association);
    BASEApiMethod(bool association, const std::map<std::string, std::string>& initial);

  private:
    const bool isAssociation;
    /** By name; std::less on bytes is the order of the document. */
    std::map<std::string, std::string, std::less<>> attributes;
};
