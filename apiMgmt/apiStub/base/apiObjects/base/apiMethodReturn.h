#pragma once

#include <string>
#include <vector>

#include "apiMgmt/apiStub/base/apiAttributes/numberApiAttributes.h"
#include "apiMgmt/apiStub/base/apiObjects/base/apiObjectFactory.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiObject.h"

/** Error state for an error code that this library does not know. */
inline constexpr int kUnknownErrorState = 999;

/** The status of a response, which is itself an object. */
class APIApiMethodReturn : public BASEApiObject {
  public:
    APIApiMethodReturn();

    /** Returns "ApiMethodReturn", the name under which the class is registered. */
    const std::string& GetObjectName() const override;
    const ATTRIBUTEList& GetAttributeList() const override;

    static const STRINGApiAttribute& ErrorAttribute();
    static const ENUMApiAttribute& ErrorCodeAttribute();
    static const STRINGApiAttribute& ErrorDetailAttribute();
    static const ENUMApiAttribute& LocaleAttribute();
    static const STRINGApiAttribute& LocalizedErrorAttribute();
    static const ENUMApiAttribute& ReturnObjectEncodeAttribute();
    static const BOOLEANApiAttribute& SuccessfulAttribute();
    static const STRINGARRAYApiAttribute& WarningListAttribute();
    static const ATTRIBUTEList& Attributes();

    void SetError(const std::string& error);
    std::string GetError() const;
    /** Takes an ID of gErrorStateEnumIdStrList. An unknown one stores an empty string. */
    void SetErrorCode(int errorState);
    std::string GetErrorCode() const;
    /** Returns the ID of ErrorCode: kUnknownErrorState for an unknown description, 1 if it is absent. */
    int GetErrorState() const;
    void SetErrorDetail(const std::string& detail);
    std::string GetErrorDetail() const;
    /** Takes an ID of gLanguageLocaleEnumIdStrList. */
    void SetLocale(int id);
    std::string GetLocale() const;
    void SetLocalizedError(const std::string& error);
    std::string GetLocalizedError() const;
    /** Takes an ID of gObjectReturnEncodeEnumIdStrList. */
    void SetReturnObjectEncode(int encoding);
    std::string GetReturnObjectEncode() const;
    void SetSuccessful(bool successful);
    bool GetSuccessful() const;
    void SetWarningList(const std::vector<std::string>& warnings);
    std::vector<std::string> GetWarningList() const;
};

/**
 * Registers the class. In the header, because the linker would drop an unreferenced object file of an
 * archive. The units of the generated registrations include it.
 */
inline const REGISTERClass<BASEApiObject, APIApiMethodReturn> apiMethodReturnRegistration("ApiMethodReturn");
