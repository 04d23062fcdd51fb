#pragma once

#include <memory>
#include <ostream>
#include <string>

#include "apiMgmt/apiStub/base/apiObjects/base/apiMethodReturn.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethod.h"

/** How objects in a response are encoded: values of gObjectReturnEncodeEnumIdStrList. */
namespace object_encoding {
inline constexpr int kXml = 1;
inline constexpr int kCsv = 2;
}  // namespace object_encoding

/** The response to a call: its status and, in derived classes, a result. */
class BASEApiMethodReturn : public APIApiMethodReturn {
  public:
    /** A success without a method. */
    BASEApiMethodReturn();
    /** `method` is the call, or null. Takes ownership of it. */
    BASEApiMethodReturn(bool successful, BASEApiMethod* method);
    BASEApiMethodReturn(bool successful, int errorState, const std::string& error,
                        const std::string& localizedError, const std::string& errorDetail,
                        BASEApiMethod* method);
    BASEApiMethodReturn(const BASEApiMethodReturn&) = delete;
    BASEApiMethodReturn& operator=(const BASEApiMethodReturn&) = delete;

    /** Returns the result's element; empty without a result. `encoding` applies to objects in it. */
    virtual std::string ReturnXml(int encoding) const;

    /** Appends that element to a document. */
    virtual void AppendReturnXml(std::string& document, int encoding) const;

    /** Returns the whole document. Stores the encoding in the status. */
    std::string GenerateResponseXml(int encoding);

    /** Writes success, error and call in human-readable form, one per line. */
    void ToStream(std::ostream& stream) const;

    /** Returns the call, or null. It belongs to this object. */
    const BASEApiMethod* GetMethod() const { return method.get(); }

  private:
    std::unique_ptr<BASEApiMethod> method;
};
