#pragma once

#include <algorithm>
#include <cstddef>
#include <string>

#include "apiMgmt/apiStub/base/apiObjects/base/baseApiAssociation.h"

/** A text as an argument of a template. */
template <size_t size>
struct ASSOCIATIONName {
    char text[size];
    consteval ASSOCIATIONName(const char (&literal)[size]) { std::copy_n(literal, size, text); }
};

/** A relation that is all said by its object's class and its name. */
template <class Object, ASSOCIATIONName relation>
class NAMEDApiAssociation : public BASEApiAssociation {
  public:
    NAMEDApiAssociation() = default;
    /** From a map of attributes, or from the id of the instance whose relation is asked for. */
    using BASEApiAssociation::BASEApiAssociation;

    const std::string& GetCommandName() const override {
        static const auto& name = *new std::string(relation.text);
        return name;
    }
    const std::string& GetObjectName() const override { return Object::ObjectName(); }
};
