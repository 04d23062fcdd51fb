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

/** An object with a health of its own. A new one is up. */
class TSStatusBaseApiObject : public TSBaseApiObject {
  public:
    const ATTRIBUTEList& GetAttributeList() const override;

    static const ENUMApiAttribute& StatusAttribute();
    static const ENUMApiAttribute& ChildStatusAttribute();
    static const STRINGApiAttribute& StatusMessageAttribute();
    static const ATTRIBUTEList& Attributes();

    /** By the id in gStatusEnumIdStrList; one that it does not know stores an empty text. */
    void SetStatus(int id);
    std::string GetStatus() const;
    void SetChildStatus(int id);
    std::string GetChildStatus() const;
    void SetStatusMessage(const std::string& message);
    std::string GetStatusMessage() const;

  protected:
    explicit TSStatusBaseApiObject(const std::string& objectName);
};
