#pragma once

#include "apiMgmt/apiStub/base/apiObjects/base/baseApiObject.h"

/**
 * How the objects of an answer are written when it is not as their classes say: under another element, or
 * with only some of their attributes, as one who asks for the lite form gets them. As it stands, it changes
 * nothing.
 */
class OBJECTForm {
  public:
    virtual ~OBJECTForm() = default;

    virtual const std::string& ElementOf(const BASEApiObject& object) const { return object.GetObjectName(); }

    /** Attributes in the order in which they are written. The same list for objects of one sort: a writer
        takes what it knows of one over to the next. */
    virtual const ATTRIBUTEList& AttributesOf(const BASEApiObject& object) const {
        return object.GetAttributeList();
    }
};
