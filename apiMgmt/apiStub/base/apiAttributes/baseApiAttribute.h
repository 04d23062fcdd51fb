#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct FILTERItem;

/**
 * How one named value of an object or a call is spelled in documents, which values are legal and how it
 * compares with a filter. Values are never held here: objects and calls keep texts, and each kind of
 * attribute has `ToText` and `FromText`, which convert on demand and never fail. Descriptors are made at
 * first use, immutable and shared by all threads and instances until the process exits.
 */
class BASEApiAttribute {
  public:
    class BASEAttributeProperties {
      public:
        BASEAttributeProperties(std::string xmlName, uint32_t displayWidth, bool firstFlag, bool secondFlag,
                                std::string label);
        virtual ~BASEAttributeProperties() = default;

        /** The element in documents, and the key in maps of attributes. */
        std::string xmlName;
        /** Of a column of a table for people, in characters. */
        uint32_t displayWidth;
        /** Carried along for clients; nothing here reads them. */
        bool firstFlag;
        bool secondFlag;
        std::string label;
    };

    BASEApiAttribute(const std::string& xmlName, uint32_t displayWidth, bool firstFlag,
                     const std::string& label);
    virtual ~BASEApiAttribute();
    BASEApiAttribute(const BASEApiAttribute&) = delete;
    BASEApiAttribute& operator=(const BASEApiAttribute&) = delete;

    /** True for a legal text. Throws APIMethodError, with the bounds as parameters, for any other. */
    virtual bool Validate(const std::string& text) const;

    /** Whether a value passes a filter's item. An empty value, and an empty one in the filter, never do. */
    virtual bool MatchesFilter(const FILTERItem& item, const std::string& text) const = 0;

    const std::string& GetXmlName() const { return properties->xmlName; }
    const std::string& GetLabel() const { return properties->label; }
    const BASEAttributeProperties& GetProperties() const { return *properties; }

  protected:
    /** Throws APIMethodError for a null pointer. */
    explicit BASEApiAttribute(std::unique_ptr<BASEAttributeProperties> owned);

  private:
    const std::unique_ptr<BASEAttributeProperties> properties;
};

/** The descriptors of a class, in their order. They live until the process exits. */
using ATTRIBUTEList = std::vector<const BASEApiAttribute*>;

/** The class's own descriptors, then those of its base. */
ATTRIBUTEList JoinAttributeLists(ATTRIBUTEList own, const ATTRIBUTEList& ofBase);

/** The descriptor with that name, or null. */
const BASEApiAttribute* FindAttributeIn(const ATTRIBUTEList& list, std::string_view xmlName);
