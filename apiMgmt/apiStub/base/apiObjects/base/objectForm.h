#pragma once

#include "apiMgmt/apiStub/base/apiObjects/base/baseApiObject.h"

/**
 * Changes how objects in a response are written: with another element name, or with only some attributes, as
 * for reduced objects. This base class changes nothing.
 */
class OBJECTForm {
  public:
    virtual ~OBJECTForm() = default;

    virtual const std::string& ElementOf(const BASEApiObject& object) const { return object.GetObjectName(); }

    /**
     * Returns the attributes in the order of output. Must return the same list for all objects of a class,
     * because a writer caches per list.
     */
    virtual const ATTRIBUTEList& AttributesOf(const BASEApiObject& object) const {
        return object.GetAttributeList();
    }
};
