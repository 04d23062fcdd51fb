#include "tests/unit/apiStub/sampleClasses.h"

#include "apiMgmt/apiStub/base/apiObjects/base/apiObjectFactory.h"

namespace sample {

int Disk::alive = 0;

Disk::Disk() : TSStatusBaseApiObject(ObjectName()) {
    ++alive;
}

const std::string& Disk::ObjectName() {
    static const std::string name = "TsDisk";
    return name;
}

const ATTRIBUTEList& Disk::GetAttributeList() const {
    static const ATTRIBUTEList list =
        JoinAttributeLists({&IndexAttribute(), &NameAttribute()}, TSStatusBaseApiObject::Attributes());
    return list;
}

const INTApiAttribute& Disk::IndexAttribute() {
    static const INTApiAttribute attribute("Index", 8, false, 1, -1, "Index");
    return attribute;
}

const STRINGApiAttribute& Disk::NameAttribute() {
    static const STRINGApiAttribute attribute("Name", 20, false, 1, 64, "<>&", "", "Name");
    return attribute;
}

const std::string& AsyncTask::GetObjectName() const {
    static const std::string name = "asynctask";
    return name;
}

const METHODDescription& DiskGetList::Description() {
    static const METHODDescription description{.objectName = Disk::ObjectName(),
                                               .commandName = "GetList",
                                               .changesState = false,
                                               .privilege = USER_PRIVILEGE_REPORTER,
                                               .required = {"Filter"},
                                               .attributes = {&GETLISTApiMethod::FilterAttribute()}};
    return description;
}

const METHODDescription& DiskModify::Description() {
    static const METHODDescription description{
        .objectName = Disk::ObjectName(),
        .commandName = "Modify",
        .changesState = true,
        .privilege = USER_PRIVILEGE_VOLUME_MANAGER,
        .required = {"InstanceId", "Name"},
        .attributes = {&Disk::IndexAttribute(), &Disk::NameAttribute()},
        .sourceFile = "sample/disk",
        .sourceLine = 7};
    return description;
}

const std::string& DiskEnclosure::GetCommandName() const {
    static const std::string name = "Enclosure";
    return name;
}

const std::string& HistoricalFilter::GetObjectName() const {
    static const std::string name = "HistoricalFilter";
    return name;
}

const ATTRIBUTEList& HistoricalFilter::GetAttributeList() const {
    static const ENUMApiAttribute filter_time("FilterTime", 25, false, "Filter Time");
    static const INTApiAttribute count("MaxCountReturn", 20, false, -1, -1, "Max Count Return");
    static const ATTRIBUTEList list = {&filter_time, &count};
    return list;
}

namespace {

const REGISTERClass<BASEApiObject, Disk> disk("TsDisk");
const REGISTERClass<BASEApiObject, AsyncTask> task("asynctask");
const REGISTERClass<BASEApiMethod, DiskGetList> get_list("APITsDiskGetListMethod");
const REGISTERClass<BASEApiMethod, DiskModify> modify("APITsDiskModifyMethod");
const REGISTERClass<BASEApiMethodObject, HistoricalFilter> filter("HistoricalFilter");

}  // namespace

}  // namespace sample
