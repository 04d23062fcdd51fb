#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethodObject.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethodReturn.h"
#include "apiMgmt/apiStub/base/apiObjects/base/objectForm.h"

/** Answers with a result, a class for each kind. All are successes unless their status is set otherwise. A
   method that is handed to a constructor belongs to the return from then on. */

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
    /** A row of an enumeration with texts of its own. */
    struct Row {
        int32_t Value = 0;
        std::string Description;
        std::string UiString;
    };

    explicit ENUMMaskMethodReturn(const std::string& content, BASEApiMethod* method = nullptr);
    std::string ReturnXml(int encoding) const override;

    /** The rows in the value; those without Value or Description are left out. */
    std::vector<Row> GetRows() const;

    /** The content of the element: for each row an element with Value, Description and UiString. */
    std::string value;
};

/** Objects of the array: one, or a list. */
class COMPObjectMethodReturn : public BASEApiMethodReturn {
  public:
    explicit COMPObjectMethodReturn(bool holdsList, BASEApiMethod* method = nullptr);
    ~COMPObjectMethodReturn() override;

    /** A list is written without the objects that the filter of its method keeps out. */
    std::string ReturnXml(int encoding) const override;
    void AppendReturnXml(std::string& document, int encoding) const override;

    /** How the objects are written; null, as at first, as their classes say. Lent: it must outlive the
        writing. */
    void SetForm(const OBJECTForm* lent) { form = lent; }

    /** The one object, which stays here; null for a list. */
    BASEApiObject* GetObject() const;

    /**
     * Takes an object, replacing all others or behind them. Null is ignored, and without replace so is a
     * second object where there is no list. Returns whether the object was taken: only then it belongs to the
     * return. No object that is owned may be in a list twice.
     */
    bool AddObject(BASEApiObject* object, bool replace);

    /** Takes a list in place of what is held. */
    void AssignObjects(std::vector<BASEApiObject*> list);

    const std::vector<BASEApiObject*>& GetObjects() const { return objects; }
    /** Those of a list that the filter of its method lets pass; they stay here. */
    std::vector<BASEApiObject*> ObjectsToWrite() const;

    bool isArray;
    /** Whether the objects are deleted when they are replaced and with the return. */
    bool ownsObjects = true;

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
    /** Method objects have one form, whatever the encoding. */
    std::string ReturnXml(int encoding) const override;

    bool isArray;
    std::vector<std::unique_ptr<BASEApiMethodObject>> objects;
};
