#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "apiMgmt/apiStub/base/apiAttributes/baseApiAttribute.h"
#include "apiMgmt/apiStub/base/apiAttributes/enumRow.h"

/** Attributes that hold texts, words of enumerations and lists of them. Lengths are in bytes. */

class STRINGApiAttribute : public BASEApiAttribute {
  public:
    /** A negative length is no bound; with both lengths 0 a value is not examined at all. */
    class STRINGAttributeProperties : public BASEAttributeProperties {
      public:
        STRINGAttributeProperties(const std::string& xmlName, uint32_t displayWidth, bool firstFlag,
                                  bool secondFlag, int64_t minLength, int64_t maxLength,
                                  const std::string& invalidChars, const std::string& pattern,
                                  const std::string& label);
        int64_t minLength;
        int64_t maxLength;
        std::string invalidChars;
        /** Nothing here reads it. */
        std::string pattern;
    };

    STRINGApiAttribute(const std::string& xmlName, uint32_t displayWidth, bool firstFlag, int64_t minLength,
                       int64_t maxLength, const std::string& label);
    STRINGApiAttribute(const std::string& xmlName, uint32_t displayWidth, bool firstFlag, int64_t minLength,
                       int64_t maxLength, const std::string& invalidChars, const std::string& pattern,
                       const std::string& label);
    bool Validate(const std::string& text) const override;
    bool MatchesFilter(const FILTERItem& item, const std::string& text) const override;

    std::string ToText(const std::string& value) const { return value; }
    std::string FromText(const std::string& text) const { return text; }

  protected:
    explicit STRINGApiAttribute(std::unique_ptr<STRINGAttributeProperties> owned);
};

class NAMEApiAttribute : public STRINGApiAttribute {
  public:
    NAMEApiAttribute(const std::string& xmlName, uint32_t displayWidth, bool firstFlag, bool secondFlag,
                     int64_t minLength, int64_t maxLength, const std::string& label);
};

/** The identity of an object, not examined. */
class INSTANCEIDApiAttribute : public STRINGApiAttribute {
  public:
    INSTANCEIDApiAttribute(const std::string& xmlName, uint32_t displayWidth, bool firstFlag,
                           const std::string& label);
    bool MatchesFilter(const FILTERItem& item, const std::string& text) const override;
};

/** What the attributes of enumerations have in common: the table that their words come from, without rows
    where any word will do. It is there to be read: no value is refused for it. */
class ENUMTABLEApiAttribute : public BASEApiAttribute {
  public:
    class ENUMAttributeProperties : public BASEAttributeProperties {
      public:
        ENUMAttributeProperties(const std::string& xmlName, uint32_t displayWidth, bool firstFlag,
                                const std::string& label, ENUMTable rows);
        ENUMTable table;
    };

    ENUMTABLEApiAttribute(const std::string& xmlName, uint32_t displayWidth, bool firstFlag,
                          const std::string& label, ENUMTable rows = {});
    const ENUMTable& GetTable() const;
};

/** The `Description` of a row of an enumeration. */
class ENUMApiAttribute : public ENUMTABLEApiAttribute {
  public:
    using ENUMTABLEApiAttribute::ENUMTABLEApiAttribute;
    bool MatchesFilter(const FILTERItem& item, const std::string& text) const override;

    std::string ToText(const std::string& description) const { return description; }
    std::string FromText(const std::string& text) const;
};

/** Several of an enumeration's descriptions, separated by blanks. */
class ENUMMASKApiAttribute : public ENUMTABLEApiAttribute {
  public:
    using ENUMTABLEApiAttribute::ENUMTABLEApiAttribute;
    bool MatchesFilter(const FILTERItem&, const std::string&) const override { return false; }

    std::string ToText(const std::vector<std::string>& descriptions) const;
    std::vector<std::string> FromText(const std::string& text) const;
};

/** Texts joined by ":"; one within a text travels as "-co-". */
class STRINGARRAYApiAttribute : public BASEApiAttribute {
  public:
    using BASEApiAttribute::BASEApiAttribute;
    bool MatchesFilter(const FILTERItem&, const std::string&) const override { return false; }

    std::string ToText(const std::vector<std::string>& items) const;
    std::vector<std::string> FromText(const std::string& text) const;
};
