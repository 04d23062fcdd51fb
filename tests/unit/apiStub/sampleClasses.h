#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "apiMgmt/apiStub/base/apiAttributes/apiAttributes.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiAssociation.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethodObject.h"
#include "apiMgmt/apiStub/base/apiObjects/base/describedApiMethod.h"
#include "apiMgmt/apiStub/base/apiObjects/base/getListApiMethod.h"
#include "apiMgmt/apiStub/base/apiObjects/base/tsBaseApiObject.h"
#include "apiMgmt/apiStub/base/apiObjects/base/typedAccess.h"

/** A family of classes as the generator makes them, small: an object with a few attributes, its calls, a
   method object. All but the association are registered. */
namespace sample {

class Disk : public TSStatusBaseApiObject {
  public:
    Disk();
    static const std::string& ObjectName();
    const std::string& GetObjectName() const override { return ObjectName(); }
    const ATTRIBUTEList& GetAttributeList() const override;

    static const INTApiAttribute& IndexAttribute();
    static const STRINGApiAttribute& NameAttribute();
    void SetIndex(int64_t value) { SetTyped(*this, IndexAttribute(), value); }
    void SetName(const std::string& value) { SetTyped(*this, NameAttribute(), value); }
    std::string GetName() const { return GetTyped(*this, NameAttribute()); }

    /** The current number of instances. */
    static int alive;
    ~Disk() override { --alive; }
};

/** The object whose values are already markup. */
class AsyncTask : public BASEApiObject {
  public:
    AsyncTask() : BASEApiObject("asynctask") {}
    const std::string& GetObjectName() const override;
};

class DiskGetList : public DESCRIBEDApiMethod<GETLISTApiMethod, DiskGetList> {
  public:
    using DESCRIBEDApiMethod::DESCRIBEDApiMethod;
    static const METHODDescription& Description();
};

class DiskModify : public DESCRIBEDApiMethod<BASEApiMethod, DiskModify> {
  public:
    using DESCRIBEDApiMethod::DESCRIBEDApiMethod;
    static const METHODDescription& Description();
    void CheckState() const override { ++state_checks; }

    mutable int state_checks = 0;
};

class DiskEnclosure : public BASEApiAssociation {
  public:
    DiskEnclosure() = default;
    using BASEApiAssociation::BASEApiAssociation;
    const std::string& GetCommandName() const override;
    const std::string& GetObjectName() const override { return Disk::ObjectName(); }
};

/** Registered as "HistoricalFilter". */
class HistoricalFilter : public BASEApiMethodObject {
  public:
    const std::string& GetObjectName() const override;
    const ATTRIBUTEList& GetAttributeList() const override;
};

}  // namespace sample
