#pragma once

#include <cstdint>
#include <string>

#include "apiMgmt/apiStub/base/apiAttributes/baseApiAttribute.h"

/** Attributes that hold network addresses. */

/** Four pieces with points between them, which are not examined further; anything else is "0.0.0.0". */
class IPV4ADDRESSApiAttribute : public BASEApiAttribute {
  public:
    using BASEApiAttribute::BASEApiAttribute;
    bool MatchesFilter(const FILTERItem& item, const std::string& text) const override;

    std::string ToText(const std::string& address) const;
    std::string FromText(const std::string& text) const;
};

/** An address without its prefix length. What is no address is stored as an empty text and reads as "::". */
class IPV6ADDRESSApiAttribute : public BASEApiAttribute {
  public:
    using BASEApiAttribute::BASEApiAttribute;
    bool MatchesFilter(const FILTERItem& item, const std::string& text) const override;

    std::string ToText(const std::string& address) const;
    std::string FromText(const std::string& text) const;
};
