#include "apiMgmt/apiStub/base/apiObjects/base/methodReturns.h"

#include <algorithm>
#include <iterator>

#include "apiMgmt/apiStub/base/apiAttributes/attributeText.h"
#include "apiMgmt/apiStub/base/apiAttributes/filterList.h"
#include "apiMgmt/apiStub/base/apiObjects/base/elementText.h"
#include "apiMgmt/apiStub/base/apiObjects/base/getListApiMethod.h"
#include "apiMgmt/apiStub/base/apiObjects/base/objectWriter.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/common/xmlwrap/xmlParser.h"

namespace {

std::string Element(std::string_view name, std::string_view text) {
    std::string xml;
    AppendElement(xml, name, text);
    return xml;
}

}  // namespace

BOOLMethodReturn::BOOLMethodReturn(bool result, BASEApiMethod* owned)
    : BASEApiMethodReturn(true, owned), value(result) {}

std::string BOOLMethodReturn::ReturnXml(int /*encoding*/) const {
    return Element("ReturnBool", value ? "True" : "False");
}

INTMethodReturn::INTMethodReturn(int32_t result, BASEApiMethod* owned)
    : BASEApiMethodReturn(true, owned), value(result) {}

std::string INTMethodReturn::ReturnXml(int /*encoding*/) const {
    return Element("ReturnInt", std::to_string(value));
}

STRINGMethodReturn::STRINGMethodReturn(const std::string& result, BASEApiMethod* owned)
    : BASEApiMethodReturn(true, owned), value(result) {}

std::string STRINGMethodReturn::ReturnXml(int /*encoding*/) const {
    return Element("ReturnString", EscapeXml(value, false));
}

ENUMMethodReturn::ENUMMethodReturn(const std::string& description, BASEApiMethod* owned)
    : BASEApiMethodReturn(true, owned), value(description) {}

std::string ENUMMethodReturn::ReturnXml(int /*encoding*/) const {
    return Element("ReturnEnum", value);
}

ENUMMaskMethodReturn::ENUMMaskMethodReturn(const std::string& content, BASEApiMethod* owned)
    : BASEApiMethodReturn(true, owned), value(content) {}

std::string ENUMMaskMethodReturn::ReturnXml(int /*encoding*/) const {
    return Element("ReturnEnumMask", value);
}

std::vector<ENUMMaskMethodReturn::Row> ENUMMaskMethodReturn::GetRows() const {
    std::vector<Row> rows;
    parser::XMLParser parser;
    if (!parser.ParseXMLString(ReturnXml(object_encoding::kXml)))
        return rows;
    parser::XMLElement child = parser.GetDocumentElement().GetFirstChild();
    for (; child; child = child.GetNextSibling()) {
        const std::string id = child.GetFirstChildByTagName("Value").GetElementContent();
        Row row = {.Value = NumberOfText<int32_t>(id),
                   .Description = child.GetFirstChildByTagName("Description").GetElementContent(),
                   .UiString = child.GetFirstChildByTagName("UiString").GetElementContent()};
        if (!id.empty() && !row.Description.empty())
            rows.push_back(std::move(row));
    }
    return rows;
}

// ---- objects ----

namespace {

/**
 * A filter and the descriptors of its items. Objects of a class share their list of descriptors, so these are
 * looked up once for a sequence of such objects.
 */
class FilterCheck {
  public:
    explicit FilterCheck(const FILTERList& list) : filter(list), descriptors(list.items.size()) {}

    bool Passes(const BASEApiObject& object) {
        FindDescriptors(object.GetAttributeList());
        switch (filter.joinType) {
            case filter_join::kAnd:
                return CountOfKnown(object, false) == 0;
            case filter_join::kOr:
                return filter.items.empty() || CountOfKnown(object, true) > 0;
            default:
                return true;
        }
    }

  private:
    void FindDescriptors(const ATTRIBUTEList& list) {
        if (&list == known_list)
            return;
        known_list = &list;
        for (size_t i = 0; i < descriptors.size(); ++i)
            descriptors[i] = FindAttributeIn(list, filter.items[i].name);
    }

    /** Returns how many items with a descriptor have this verdict. */
    size_t CountOfKnown(const BASEApiObject& object, bool verdict) const {
        size_t count = 0;
        for (size_t i = 0; i < descriptors.size(); ++i) {
            const FILTERItem& item = filter.items[i];
            if (descriptors[i] != nullptr &&
                descriptors[i]->MatchesFilter(item, object.GetAttribute(item.name)) == verdict)
                ++count;
        }
        return count;
    }

    const FILTERList& filter;
    const ATTRIBUTEList* known_list = nullptr;
    std::vector<const BASEApiAttribute*> descriptors;
};

/** Returns the filter of the call, or null. */
std::unique_ptr<FILTERList> FilterOf(const BASEApiMethod* method) {
    const auto* list_method = dynamic_cast<const GETLISTApiMethod*>(method);
    return std::unique_ptr<FILTERList>(list_method == nullptr ? nullptr : list_method->GetFilter());
}

/** Returns the attribute names for CSV: those that the objects have and the form, if any, shows. */
ATTRIBUTENames NamesOf(const std::vector<BASEApiObject*>& objects, const OBJECTForm* form) {
    ATTRIBUTENames held = BASEApiObject::MergeAttributeNames(objects);
    if (form == nullptr)
        return held;
    ATTRIBUTENames shown;
    const ATTRIBUTEList* known = nullptr;
    for (const BASEApiObject* object : objects) {
        const ATTRIBUTEList& list = form->AttributesOf(*object);
        if (&list == known)
            continue;
        known = &list;
        for (const BASEApiAttribute* attribute : list) {
            if (held.contains(attribute->GetXmlName()))
                shown.insert(attribute->GetXmlName());
        }
    }
    return shown;
}

}  // namespace

// ---- COMPObjectMethodReturn ----

COMPObjectMethodReturn::COMPObjectMethodReturn(bool holdsList, BASEApiMethod* owned)
    : BASEApiMethodReturn(true, owned), isArray(holdsList) {}

COMPObjectMethodReturn::~COMPObjectMethodReturn() {
    DropObjectsExcept({});
}

std::string COMPObjectMethodReturn::ReturnXml(int encoding) const {
    std::string xml;
    AppendReturnXml(xml, encoding);
    return xml;
}

void COMPObjectMethodReturn::AppendReturnXml(std::string& document, int encoding) const {
    if (objects.empty()) {
        document += isArray ? "<ReturnObjectArray />" : "";
    } else if (isArray) {
        document += "<ReturnObjectArray>";
        AppendObjects(document, encoding, ObjectsToWrite());
        document += "</ReturnObjectArray>";
    } else {
        document += "<ReturnObject>";
        AppendObjects(document, encoding, {objects.front()});
        document += "</ReturnObject>";
    }
}

void COMPObjectMethodReturn::AppendObjects(std::string& document, int encoding,
                                           const std::vector<BASEApiObject*>& written) const {
    if (encoding != object_encoding::kCsv) {
        OBJECTWriter writer(form);
        for (const BASEApiObject* object : written)
            writer.Append(document, *object);
        return;
    }
    const ATTRIBUTENames names = NamesOf(written, form);
    document += BASEApiObject::HeaderText(names) + "<Data>";
    for (const BASEApiObject* object : written) {
        object->AppendDataRow(document, names);
        document += isArray ? ":" : "";
    }
    document += "</Data>";
}

std::vector<BASEApiObject*> COMPObjectMethodReturn::ObjectsToWrite() const {
    const std::unique_ptr<FILTERList> filter = FilterOf(GetMethod());
    if (!filter)
        return objects;
    FilterCheck check(*filter);
    std::vector<BASEApiObject*> passed;
    std::copy_if(objects.begin(), objects.end(), std::back_inserter(passed),
                 [&](const BASEApiObject* object) { return check.Passes(*object); });
    return passed;
}

BASEApiObject* COMPObjectMethodReturn::GetObject() const {
    return isArray || objects.empty() ? nullptr : objects.front();
}

bool COMPObjectMethodReturn::AddObject(BASEApiObject* object, bool replace) {
    if (object == nullptr || (!replace && !isArray && !objects.empty()))
        return false;
    if (replace)
        DropObjectsExcept({object});
    objects.push_back(object);
    return true;
}

void COMPObjectMethodReturn::AssignObjects(std::vector<BASEApiObject*> list) {
    std::erase(list, nullptr);
    DropObjectsExcept(list);
    objects = std::move(list);
}

/** Keeps the objects that are about to be added again. */
void COMPObjectMethodReturn::DropObjectsExcept(std::vector<BASEApiObject*> kept) {
    if (ownsObjects && !objects.empty()) {
        std::sort(kept.begin(), kept.end());
        for (BASEApiObject* object : objects) {
            if (!std::binary_search(kept.begin(), kept.end(), object))
                delete object;
        }
    }
    objects.clear();
}

// ---- METHODObjectMethodReturn ----

METHODObjectMethodReturn::METHODObjectMethodReturn(bool holdsList, BASEApiMethod* owned)
    : BASEApiMethodReturn(true, owned), isArray(holdsList) {}

std::string METHODObjectMethodReturn::ReturnXml(int /*encoding*/) const {
    if (objects.empty())
        return isArray ? "<ReturnMethodObjectArray />" : "";
    if (!isArray)
        return "<ReturnMethodObject>" + objects.front()->ToXml(true) + "</ReturnMethodObject>";
    std::string xml = "<ReturnMethodObjectArray>";
    for (const auto& object : objects)
        xml += object->ToXml(true);
    return xml + "</ReturnMethodObjectArray>";
}
