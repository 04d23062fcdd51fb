#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethodObject.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethodReturn.h"
#include "apiMgmt/apiStub/base/apiObjects/base/objectForm.h"

/**
 * Responses with a result, one class per kind. All are successes unless their status is set otherwise.
 * Constructors take ownership of the method.
 */

/** The return for a response that is not a valid document of the API. Not sent by the array. */
class INVALIDMethodReturn : public BASEApiMethodReturn {
  public:
    using BASEApiMethodReturn::BASEApiMethodReturn;
};

class BOOLMethodReturn : public BASEApiMethodReturn {
  public:
    explicit BOOLMethodReturn(bool result, BASEApiMethod* method = nullptr);
    std::string ReturnXml(int encoding) const override;
    bool value;
};

class INTMethodReturn : public BASEApiMethodReturn {
  public:
    explicit INTMethodReturn(int32_t result, BASEApiMethod* method = nullptr);
    std::string ReturnXml(int encoding) const override;
    int32_t value;
};

class STRINGMethodReturn : public BASEApiMethodReturn {
  public:
    explicit STRINGMethodReturn(const std::string& result, BASEApiMethod* method = nullptr);
    std::string ReturnXml(int encoding) const override;
    std::string value;
};

class ENUMMethodReturn : public BASEApiMethodReturn {
  public:
    explicit ENUMMethodReturn(const std::string& description, BASEApiMethod* method = nullptr);
    std::string ReturnXml(int encoding) const override;
    /** A Description of the enumeration. */
    std::string value;
};

class ENUMMaskMethodReturn : public BASEApiMethodReturn {
  public:
    /** A row of an enumeration that owns its strings. */
    struct Row {
        int32_t Value = 0;
        std::string Description;
        std::string UiString;
    };

    explicit ENUMMaskMethodReturn(const std::string& content, BASEApiMethod* method = nullptr);
    std::string ReturnXml(int encoding) const override;

    /** Returns the rows in the value. Skips those without Value or Description. */
    std::vector<Row> GetRows() const;

    /** The contents of the element: per row, an element with Value, Description and UiString. */
    std::string value;
};

/** Objects of the array: one, or a list. */
class COMPObjectMethodReturn : public BASEApiMethodReturn {
  public:
    explicit COMPObjectMethodReturn(bool holdsList, BASEApiMethod* method = nullptr);
    ~COMPObjectMethodReturn() override;

    /** A list is written without the objects that the call's filter excludes. */
    std::string ReturnXml(int encoding) const override;
    void AppendReturnXml(std::string& document, int encoding) const override;

    /**
     * Sets the form in which objects are written; null, the default, selects the form of their own classes.
     * The form must outlive its use.
     */
    void SetForm(const OBJECTForm* lent) { form = lent; }

    /** Returns the object, which remains owned by this one; null for a list. */
    BASEApiObject* GetObject() const;

    /**
     * Adds an object, or replaces all others by it. Ignores null and, unless `replace` is set, a second
     * object if this is not a list. Returns whether the object was added; only then is it owned. An owned
     * object must not be added to a list twice.
     */
    bool AddObject(BASEApiObject* object, bool replace);

    /** Replaces all objects by those of a list. */
    void AssignObjects(std::vector<BASEApiObject*> list);

    const std::vector<BASEApiObject*>& GetObjects() const { return objects; }
    /** Returns the objects of a list that match the call's filter. They remain owned by this one. */
    std::vector<BASEApiObject*> ObjectsToWrite() const;

    bool isArray;
    /** Whether the objects are deleted when they are replaced and by the destructor. */
    bool ownsObjects = true;
    /** Number of objects in the response that were skipped because the library lacks their classes. */
    size_t skippedCount = 0;

  private:
    void DropObjectsExcept(std::vector<BASEApiObject*> kept);
    void AppendObjects(std::string& document, int encoding, const std::vector<BASEApiObject*>& written) const;

    std::vector<BASEApiObject*> objects;
    const OBJECTForm* form = nullptr;
};

/** Structured values: one, or a list. */
class METHODObjectMethodReturn : public BASEApiMethodReturn {
  public:
    explicit METHODObjectMethodReturn(bool holdsList, BASEApiMethod* method = nullptr);
    /** Ignores the encoding: method objects are always XML. */
    std::string ReturnXml(int encoding) const override;

    bool isArray;
    std::vector<std::unique_ptr<BASEApiMethodObject>> objects;
    /** As in COMPObjectMethodReturn. */
    size_t skippedCount = 0;
};
