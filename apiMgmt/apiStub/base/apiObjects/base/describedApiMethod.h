#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <vector>

#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethod.h"

/** Everything that distinguishes a method class from others. */
struct METHODDescription {
    std::string objectName;
    std::string commandName;
    bool changesState = true;
    UserPrivilege privilege = USER_PRIVILEGE_REPORTER;
    /** In the order of the checks. */
    std::vector<std::string> required;
    ATTRIBUTEList attributes;
    /** Source file and line that the error about a missing argument names. */
    const char* sourceFile = "";
    uint32_t sourceLine = 0;
};

/**
 * A method class defined by a description. Base is BASEApiMethod or GETLISTApiMethod. Method is the class
 * itself, with a function `static const METHODDescription& Description()`.
 */
template <class Base, class Method>
class DESCRIBEDApiMethod : public Base {
  public:
    DESCRIBEDApiMethod() : Base(false) {}
    explicit DESCRIBEDApiMethod(const std::map<std::string, std::string>& initial) : Base(false, initial) {}

    const std::string& GetCommandName() const override { return Method::Description().commandName; }
    const std::string& GetObjectName() const override { return Method::Description().objectName; }
    bool ChangesState() const override { return Method::Description().changesState; }
    int GetRequiredPrivilege() const override { return Method::Description().privilege; }
    const ATTRIBUTEList& GetAttributeList() const override { return Method::Description().attributes; }
    std::span<const std::string> GetRequiredNames() const override { return Method::Description().required; }
    void CheckRequiredAttributes() const override {
        const METHODDescription& description = Method::Description();
        this->CheckRequired(description.required, description.sourceFile, description.sourceLine);
    }
};
