#pragma once

#include <cstdint>
#include <string>

#include "apiMgmt/apiStub/base/apiAttributes/baseApiAttribute.h"

/** Attributes that contain network addresses. */

/** Four parts separated by dots, which are not checked further. Anything else becomes "0.0.0.0". */
class IPV4ADDRESSApiAttribute : public BASEApiAttribute {
  public:
    using BASEApiAttribute::BASEApiAttribute;
    bool MatchesFilter(const FILTERItem& item, const std::string& text) const override;

    std::string ToText(const std::string& address) const;
    std::string FromText(const std::string& text) const;
};

/** An address without its prefix length. An invalid address is stored as an empty string and read as "::". */
class IPV6ADDRESSApiAttribute : public BASEApiAttribute {
  public:
    using BASEApiAttribute::BASEApiAttribute;
    bool MatchesFilter(const FILTERItem& item, const std::string& text) const override;

    std::string ToText(const std::string& address) const;
    std::string FromText(const std::string& text) const;
};
