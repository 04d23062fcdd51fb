#pragma once

#include <cstdint>
#include <string>

#include "apiMgmt/apiStub/base/apiAttributes/numberApiAttributes.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiObject.h"

/** An object that belongs to an array. */
class TSBaseApiObject : public BASEApiObject {
  public:
    const ATTRIBUTEList& GetAttributeList() const override;

    static const NAMEApiAttribute& TsNameAttribute();
    static const INTApiAttribute& TsSerialNumberAttribute();
    static const ATTRIBUTEList& Attributes();

    void SetTsName(const std::string& name);
    std::string GetTsName() const;
    void SetTsSerialNumber(int64_t number);
    int64_t GetTsSerialNumber() const;

  protected:
    using BASEApiObject::BASEApiObject;
};

/** An object with its own status. It is initially Up. */
class TSStatusBaseApiObject : public TSBaseApiObject {
  public:
    const ATTRIBUTEList& GetAttributeList() const override;

    static const ENUMApiAttribute& StatusAttribute();
    static const ENUMApiAttribute& ChildStatusAttribute();
    static const STRINGApiAttribute& StatusMessageAttribute();
    static const ATTRIBUTEList& Attributes();

    /** Takes an ID of gStatusEnumIdStrList. An unknown one stores an empty string. */
    void SetStatus(int id);
    std::string GetStatus() const;
    void SetChildStatus(int id);
    std::string GetChildStatus() const;
    void SetStatusMessage(const std::string& message);
    std::string GetStatusMessage() const;

  protected:
    explicit TSStatusBaseApiObject(const std::string& objectName);
};
