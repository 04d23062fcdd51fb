#include "apiMgmt/apiStub/client/preparedCall.h"

#include <map>
#include <utility>

#include "apiMgmt/apiStub/base/apiObjects/base/apiObjectFactory.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiAssociation.h"
#include "apiMgmt/apiStub/client/attributeValue.h"
#include "apiMgmt/apiStub/client/clientError.h"
#include "apiMgmt/common/utils/apiMethodError.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/common/xmlwrap/xmlParser.h"

namespace tessera {

namespace {

using Arguments = std::map<std::string, std::string>;

/** A copy of a call with other arguments. */
class RenderedCall : public BASEApiMethod {
  public:
    RenderedCall(const BASEApiMethod& call, const Arguments& arguments)
        : BASEApiMethod(call.IsAssociation(), arguments),
          object(call.GetObjectName()),
          command(call.GetCommandName()) {}
    const std::string& GetObjectName() const override { return object; }
    const std::string& GetCommandName() const override { return command; }

  private:
    const std::string object;
    const std::string command;
};

bool IsStructured(const BASEApiAttribute& attribute) {
    return dynamic_cast<const METHODOBJECTApiAttribute*>(&attribute) != nullptr ||
           dynamic_cast<const METHODOBJECTARRAYApiAttribute*>(&attribute) != nullptr;
}

/** Returns the element with its fields checked and escaped. */
std::string RenderStructure(const Structure& structure, const std::string& argument) {
    const std::unique_ptr<BASEApiMethodObject> object =
        APIObjectFactory<BASEApiMethodObject>::Instance().Create(structure.name);
    if (!object)
        throw InvalidArgument(argument + " contains an unknown structure '" + structure.name + "'", argument);
    for (const auto& [field, text] : structure.fields) {
        const std::string name(field);
        const BASEApiAttribute* known = FindAttributeIn(object->GetAttributeList(), name);
        if (known == nullptr)
            throw InvalidArgument(structure.name + " has no field " + name, argument + "." + name);
        object->SetAttribute(name, CheckedValue(*known, std::string(text), argument + "." + name));
    }
    return object->ToXml(true);
}

std::string RenderStructures(const std::string& text, const std::string& argument) {
    std::string elements;
    for (const Structure& each : ReadStructures(text, argument))
        elements += RenderStructure(each, argument);
    return elements;
}

/** Checks and renders the arguments of one call. */
class CallRenderer {
  public:
    explicit CallRenderer(const BASEApiMethod& rendered)
        : call(rendered),
          is_described(!call.GetAttributeList().empty() || !call.GetRequiredNames().empty()) {}

    Arguments Render() const {
        CheckRequired();
        CheckState();
        Arguments arguments;
        for (const auto& [name, text] : call.GetAttributes())
            arguments[name] = RenderArgument(name, text);
        return arguments;
    }

  private:
    std::string Title() const { return call.GetObjectName() + " " + call.GetCommandName(); }

    /** Reports all missing arguments together. */
    void CheckRequired() const {
        std::string first;
        std::string missing;
        for (const std::string& name : call.GetRequiredNames()) {
            if (call.HasAttribute(name) || BASEApiMethod::IsFilterAttribute(name))
                continue;
            missing += (missing.empty() ? "" : ", ") + name;
            first = first.empty() ? name : first;
        }
        if (!missing.empty())
            throw InvalidArgument(Title() + " needs " + missing, first, LegalValues(*DescriptorOf(first)));
    }

    void CheckState() const {
        try {
            call.CheckState();
        } catch (const APIMethodError& error) {
            throw InvalidArgument(Title() + ": " + error.GetSummary(), "");
        }
    }

    /** Returns null for an unknown name. Classes do not describe the instance ID of a call. */
    const BASEApiAttribute* DescriptorOf(const std::string& name) const {
        const BASEApiAttribute& id = BASEApiAssociation::InstanceIdAttribute();
        const BASEApiAttribute* known = call.FindAttribute(name);
        return known == nullptr && name == id.GetXmlName() ? &id : known;
    }

    std::string RenderArgument(const std::string& name, const std::string& text) const {
        const BASEApiAttribute* known = DescriptorOf(name);
        if (known != nullptr && IsStructured(*known))
            return RenderStructures(text, name);
        if (known != nullptr)
            return EscapeXml(CheckedValue(*known, text, name), false);
        if (is_described && name != kLiteObj)
            throw InvalidArgument(Title() + " has no argument " + name, name);
        return EscapeXml(text, false);
    }

    static constexpr char kLiteObj[] = "LiteObj";

    const BASEApiMethod& call;
    const bool is_described;
};

}  // namespace

std::unique_ptr<BASEApiMethod> PrepareCall(const BASEApiMethod& call) {
    return std::make_unique<RenderedCall>(call, CallRenderer(call).Render());
}

std::vector<Structure> ReadStructures(const std::string& text, const std::string& argument) {
    const InvalidArgument malformed("the structured argument " + argument + " is not well-formed", argument);
    parser::XMLParser parser;
    if (!parser.ParseXMLString("<Values>" + text + "</Values>"))
        throw malformed;
    std::vector<Structure> structures;
    const parser::XMLElement root = parser.GetDocumentElement();
    for (parser::XMLElement each = root.GetFirstChild(); each; each = each.GetNextSibling()) {
        Structure& structure = structures.emplace_back(Structure{std::string(each.GetTagName()), {}});
        for (parser::XMLElement field = each.GetFirstChild(); field; field = field.GetNextSibling()) {
            if (field.GetFirstChild())  // fields contain text only
                throw malformed;
            structure.fields.Set(field.GetTagName(), field.GetText());
        }
    }
    if (structures.empty() && !text.empty())
        throw malformed;
    return structures;
}

}  // namespace tessera
