#pragma once

#include <string>
#include <vector>

#include "apiMgmt/apiStub/base/apiAttributes/numberApiAttributes.h"
#include "apiMgmt/apiStub/base/apiObjects/base/apiObjectFactory.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiObject.h"

/** What the status of a document means when its error code is none that this system knows. */
inline constexpr int kUnknownErrorState = 999;

/** The status record of an answer, itself an object. */
class APIApiMethodReturn : public BASEApiObject {
  public:
    APIApiMethodReturn();

    /** "ApiMethodReturn", under which it is registered as well. */
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
    /** By the id in gErrorStateEnumIdStrList; one that it does not know stores an empty text. */
    void SetErrorCode(int errorState);
    std::string GetErrorCode() const;
    /** The id of what ErrorCode holds: kUnknownErrorState for a text that is in no row, 1 when it is absent.
     */
    int GetErrorState() const;
    void SetErrorDetail(const std::string& detail);
    std::string GetErrorDetail() const;
    /** By the id in gLanguageLocaleEnumIdStrList. */
    void SetLocale(int id);
    std::string GetLocale() const;
    void SetLocalizedError(const std::string& error);
    std::string GetLocalizedError() const;
    /** By the id in gObjectReturnEncodeEnumIdStrList. */
    void SetReturnObjectEncode(int encoding);
    std::string GetReturnObjectEncode() const;
    void SetSuccessful(bool successful);
    bool GetSuccessful() const;
    void SetWarningList(const std::vector<std::string>& warnings);
    std::vector<std::string> GetWarningList() const;
};

/** Here and not in the source, which an archive drops where nothing else refers to the class: whoever
   includes this registers the class, the entries of the generated ones among them. */
inline const REGISTERClass<BASEApiObject, APIApiMethodReturn> apiMethodReturnRegistration("ApiMethodReturn");
