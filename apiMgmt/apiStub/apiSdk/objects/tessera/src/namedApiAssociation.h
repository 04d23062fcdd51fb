#pragma once

#include <algorithm>
#include <cstddef>
#include <string>

#include "apiMgmt/apiStub/base/apiObjects/base/baseApiAssociation.h"

/** A string as a template argument. */
template <size_t size>
struct ASSOCIATIONName {
    char text[size];
    consteval ASSOCIATIONName(const char (&literal)[size]) { std::copy_n(literal, size, text); }
};

/** An association that is defined by its object's class and its name. */
template <class Object, ASSOCIATIONName relation>
class NAMEDApiAssociation : public BASEApiAssociation {
  public:
    NAMEDApiAssociation() = default;
    /** Construct from a map of attributes, or from the ID of the instance whose association is called. */
    using BASEApiAssociation::BASEApiAssociation;

    const std::string& GetCommandName() const override {
        static const auto& name = *new std::string(relation.text);
        return name;
    }
    const std::string& GetObjectName() const override { return Object::ObjectName(); }
};
