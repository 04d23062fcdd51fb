#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "apiMgmt/apiStub/base/apiAttributes/textApiAttributes.h"
#include "apiMgmt/apiStub/base/apiObjects/base/attributeMap.h"

/** Names of attributes in the order of a document's rows. */
using ATTRIBUTENames = std::set<std::string, std::less<>>;

/**
 * An object of the array as a set of texts: a class names the object and its attributes, an instance holds
 * what a document says. Not shared between threads; the descriptors are.
 */
class BASEApiObject {
  public:
    virtual ~BASEApiObject() = default;

    virtual const std::string& GetObjectName() const = 0;

    /** Whether that call changes the array; false when there is no such call among the registered ones. */
    virtual bool IsMethodChangingState(const std::string& object, const std::string& command) const;

    /** The descriptors of the class, own ones first. */
    virtual const ATTRIBUTEList& GetAttributeList() const;

    /** Makes the lists of the class and of all that belongs to its family, so that their first use costs
        nothing. Needed for nothing else: any thread may be the first to use a list. */
    virtual void InitMetaData() const;

    /** An empty name is ignored, and without force an empty text as well. */
    void SetAttribute(std::string_view name, std::string_view text, bool force = true);

    /** Empty when the attribute is absent. */
    std::string GetAttribute(std::string_view name) const;
    /** Whether it is present; only then the text is set. */
    bool GetAttribute(std::string_view name, std::string& text) const;

    bool HasAttribute(std::string_view name) const { return attributes.Contains(name); }

    const ATTRIBUTEMap& GetAttributes() const { return attributes; }
    /** Does nothing when the attribute is absent. */
    void RemoveAttribute(std::string_view name) { attributes.Remove(name); }
    /** Takes away all of them, those of the constructor included. */
    void ClearAttributes() { attributes.Clear(); }

    /** Whether values have to be escaped in documents; those of one object are markup already. */
    bool EscapesValues() const;

    /** The object as an element. Attributes without a descriptor are left out. */
    std::string ToXml() const;
    void AppendXml(std::string& xml) const;

    /** The object in CSV form, with its own names as the header. */
    std::string DataText() const;
    /** The values of these names in CSV form. An attribute that the object lacks gives an empty field. */
    std::string DataRow(const ATTRIBUTENames& names) const;
    void AppendDataRow(std::string& csv, const ATTRIBUTENames& names) const;
    static std::string HeaderText(const ATTRIBUTENames& names);
    /** A value with the separators of the CSV form replaced by marks. */
    static std::string EncodeCsvValue(const std::string& text);
    /** The names of all attributes that one of the objects has. */
    static ATTRIBUTENames MergeAttributeNames(const std::vector<BASEApiObject*>& objects);

    /** Id, type and name with a blank between them, as references to the object are written. */
    std::string GetInstanceText() const;

    static const INSTANCEIDApiAttribute& InstanceIdAttribute();
    static const NAMEApiAttribute& InstanceNameAttribute();
    static const STRINGApiAttribute& ObjectTypeAttribute();
    /** The three above, with which the list of every object ends. */
    static const ATTRIBUTEList& Attributes();

    void SetInstanceId(const std::string& id);
    std::string GetInstanceId() const;
    void SetInstanceName(const std::string& name);
    std::string GetInstanceName() const;
    void SetObjectType(const std::string& type);
    std::string GetObjectType() const;

  protected:
    /** Stores the name as `ObjectType`. */
    explicit BASEApiObject(const std::string& objectName);
    BASEApiObject(const BASEApiObject&) = default;
    BASEApiObject& operator=(const BASEApiObject&) = default;
    BASEApiObject(BASEApiObject&&) noexcept = default;
    BASEApiObject& operator=(BASEApiObject&&) noexcept = default;

  private:
    ATTRIBUTEMap attributes;
};
