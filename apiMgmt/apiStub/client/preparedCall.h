#pragma once

#include <memory>
#include <string>
#include <vector>

#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethod.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethodObject.h"

namespace tessera {

/**
 * Returns a copy of a call that is ready to be sent: its arguments are checked, spelled as in documents, and
 * escaped, so the arguments of `call` must not be escaped. Throws InvalidArgument if an argument, or a field
 * of a structured argument, is missing, unknown or illegal. The arguments of a class that describes none are
 * only escaped.
 */
std::unique_ptr<BASEApiMethod> PrepareCall(const BASEApiMethod& call);

/** An element of a structured argument: its name, and its fields. */
struct Structure {
    std::string name;
    ATTRIBUTEMap fields;
};

/** Reads the elements of a structured argument. Throws InvalidArgument if the string is not well-formed. */
std::vector<Structure> ReadStructures(const std::string& text, const std::string& argument);

/**
 * Returns the values of a structured argument of a call, in order. Unlike the typed getter, reads any string
 * in a field. Ignores elements with other names. Throws InvalidArgument if the argument is not well-formed.
 */
template <class MethodObject>
std::vector<MethodObject> StructuresOf(const BASEApiMethod& call, const BASEApiAttribute& argument) {
    std::vector<MethodObject> values;
    for (const Structure& each :
         ReadStructures(call.GetAttribute(argument.GetXmlName()), argument.GetXmlName())) {
        if (each.name != MethodObject::ObjectName())
            continue;
        MethodObject& value = values.emplace_back();
        for (const auto& [name, text] : each.fields)
            value.SetAttribute(name, text);
    }
    return values;
}

}  // namespace tessera
