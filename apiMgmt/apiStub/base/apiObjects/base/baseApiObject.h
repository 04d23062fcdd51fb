#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "apiMgmt/apiStub/base/apiAttributes/textApiAttributes.h"
#include "apiMgmt/apiStub/base/apiObjects/base/attributeMap.h"

/** Names of attributes, in the order of CSV columns. */
using ATTRIBUTENames = std::set<std::string, std::less<>>;

/**
 * An object of the array as a set of strings: a class names the object and its attributes, an instance
 * contains the values of a document. Not thread-safe, but threads share the descriptors.
 */
class BASEApiObject {
  public:
    virtual ~BASEApiObject() = default;

    virtual const std::string& GetObjectName() const = 0;

    /** Returns whether that call changes the array; false if it is not registered. */
    virtual bool IsMethodChangingState(const std::string& object, const std::string& command) const;

    /** Returns the descriptors of the class, followed by those of its bases. */
    virtual const ATTRIBUTEList& GetAttributeList() const;

    /**
     * Creates the lists of the class and its family in advance, so that their first use takes no time.
     * Otherwise unnecessary: any thread may be the first to use a list.
     */
    virtual void InitMetaData() const;

    /** Ignores an empty name and, unless `force` is set, an empty string. */
    void SetAttribute(std::string_view name, std::string_view text, bool force = true);

    /** Returns "" if the attribute is absent. */
    std::string GetAttribute(std::string_view name) const;
    /** Returns whether the attribute is present. Sets `text` only then. */
    bool GetAttribute(std::string_view name, std::string& text) const;

    bool HasAttribute(std::string_view name) const { return attributes.Contains(name); }

    const ATTRIBUTEMap& GetAttributes() const { return attributes; }
    /** Does nothing if the attribute is absent. */
    void RemoveAttribute(std::string_view name) { attributes.Remove(name); }
    /** Removes all attributes, including those set by the constructor. */
    void ClearAttributes() { attributes.Clear(); }

    /** Returns whether values must be escaped in documents, which is true for all objects but one. */
    bool EscapesValues() const;

    /** Returns the object as an element. Omits attributes without a descriptor. */
    std::string ToXml() const;
    void AppendXml(std::string& xml) const;

    /** Returns the object as CSV, with its attribute names as the header. */
    std::string DataText() const;
    /** Returns the values of these attributes as CSV. An absent attribute yields an empty field. */
    std::string DataRow(const ATTRIBUTENames& names) const;
    void AppendDataRow(std::string& csv, const ATTRIBUTENames& names) const;
    static std::string HeaderText(const ATTRIBUTENames& names);
    /** Returns a value with the separators of CSV replaced by marks. */
    static std::string EncodeCsvValue(const std::string& text);
    /** Returns the names of all attributes that any of the objects has. */
    static ATTRIBUTENames MergeAttributeNames(const std::vector<BASEApiObject*>& objects);

    /** Returns instance ID, type and name, separated by spaces, as in a reference to the object. */
    std::string GetInstanceText() const;

    static const INSTANCEIDApiAttribute& InstanceIdAttribute();
    static const NAMEApiAttribute& InstanceNameAttribute();
    static const STRINGApiAttribute& ObjectTypeAttribute();
    /** Returns the three above, which end the list of every object. */
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
