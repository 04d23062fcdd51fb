#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct FILTERItem;

/**
 * A descriptor: how an attribute is spelled in documents, which values are legal and how they compare with a
 * filter. It contains no values: objects and calls store strings, and each kind of attribute has `ToText` and
 * `FromText`, which convert on demand and never fail. Descriptors are created on first use and immutable. All
 * threads share them until the process exits.
 */
class BASEApiAttribute {
  public:
    class BASEAttributeProperties {
      public:
        BASEAttributeProperties(std::string xmlName, uint32_t displayWidth, bool firstFlag, bool secondFlag,
                                std::string label);
        virtual ~BASEAttributeProperties() = default;

        /** Name of the element in documents, and key in attribute maps. */
        std::string xmlName;
        /** Width, in characters, of a column in human-readable tables. */
        uint32_t displayWidth;
        /** For clients only. */
        bool firstFlag;
        bool secondFlag;
        std::string label;
    };

    BASEApiAttribute(const std::string& xmlName, uint32_t displayWidth, bool firstFlag,
                     const std::string& label);
    virtual ~BASEApiAttribute();
    BASEApiAttribute(const BASEApiAttribute&) = delete;
    BASEApiAttribute& operator=(const BASEApiAttribute&) = delete;

    /**
     * Returns true for a legal string. For any other, throws APIMethodError with the bounds as parameters.
     */
    virtual bool Validate(const std::string& text) const;

    /**
     * Returns whether a value matches a filter item. An empty value never matches, nor does any value match
     * an empty filter value.
     */
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

/** Returns the descriptors of a class followed by those of its base. */
ATTRIBUTEList JoinAttributeLists(ATTRIBUTEList own, const ATTRIBUTEList& ofBase);

/** Returns the descriptor with that name, or null. */
const BASEApiAttribute* FindAttributeIn(const ATTRIBUTEList& list, std::string_view xmlName);
