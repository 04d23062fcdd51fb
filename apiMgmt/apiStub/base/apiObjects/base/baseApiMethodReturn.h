#pragma once

#include <memory>
#include <ostream>
#include <string>

#include "apiMgmt/apiStub/base/apiObjects/base/apiMethodReturn.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethod.h"

/** How the objects of an answer are written: values of gObjectReturnEncodeEnumIdStrList. */
namespace object_encoding {
inline constexpr int kXml = 1;
inline constexpr int kCsv = 2;
}  // namespace object_encoding

/** An answer to a call: its status, and in the classes derived from this one a result. */
class BASEApiMethodReturn : public APIApiMethodReturn {
  public:
    /** A success without a method. */
    BASEApiMethodReturn();
    /** method: the call that is answered, owned by the return from now on, or null. */
    BASEApiMethodReturn(bool successful, BASEApiMethod* method);
    BASEApiMethodReturn(bool successful, int errorState, const std::string& error,
                        const std::string& localizedError, const std::string& errorDetail,
                        BASEApiMethod* method);
    BASEApiMethodReturn(const BASEApiMethodReturn&) = delete;
    BASEApiMethodReturn& operator=(const BASEApiMethodReturn&) = delete;

    /** The result's element, empty for an answer without a result. encoding: how objects in it are written.
     */
    virtual std::string ReturnXml(int encoding) const;

    /** The same, appended to a document. */
    virtual void AppendReturnXml(std::string& document, int encoding) const;

    /** The whole document. Stores the encoding in the status. */
    std::string GenerateResponseXml(int encoding);

    /** Success, error and call, a line each, for people. */
    void ToStream(std::ostream& stream) const;

    /** The call that is answered, or null; it belongs to the return. */
    const BASEApiMethod* GetMethod() const { return method.get(); }

  private:
    std::unique_ptr<BASEApiMethod> method;
};
