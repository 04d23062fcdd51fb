#include "apiMgmt/apiStub/base/apiObjects/base/objectWriter.h"

#include "apiMgmt/apiStub/base/apiObjects/base/elementText.h"

OBJECTWriter::OBJECTWriter(const OBJECTForm* object_form)
    : form(object_form == nullptr ? plain : *object_form) {}

OBJECTWriter::Sort& OBJECTWriter::SortOf(const BASEApiObject& object) {
    const std::string& element = form.ElementOf(object);
    const ATTRIBUTEList& attributes = form.AttributesOf(object);
    for (Sort& sort : sorts) {
        if (sort.element == &element && sort.attributes == &attributes)
            return sort;
    }
    Sort& sort = sorts.emplace_back(Sort{&element, &attributes, {}});
    sort.columns.reserve(attributes.size());
    for (const BASEApiAttribute* attribute : attributes) {
        const std::string& name = attribute->GetXmlName();
        sort.columns.push_back({name, "<" + name + ">", "</" + name + ">", 0});
    }
    return sort;
}

void OBJECTWriter::Append(std::string& document, const BASEApiObject& object) {
    Sort& sort = SortOf(object);
    const bool escapes = object.EscapesValues();
    const ATTRIBUTEMap& values = object.GetAttributes();
    document.append("<").append(*sort.element).append(">");
    for (Column& column : sort.columns) {
        const auto text = values.Find(column.name, column.position);
        if (!text)
            continue;
        document += column.opening;
        if (escapes)
            AppendEscaped(document, *text);
        else
            document += *text;
        document += column.closing;
    }
    document.append("</").append(*sort.element).append(">");
}
