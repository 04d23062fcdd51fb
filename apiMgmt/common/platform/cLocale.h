#pragma once

#include <clocale>

/**
 * While an instance exists, the calling thread uses the C locale: data exchanged with the array must not
 * depend on the user's decimal separator or day names.
 */
class CLocaleScope {
  public:
    CLocaleScope();
    ~CLocaleScope();
    CLocaleScope(const CLocaleScope&) = delete;
    CLocaleScope& operator=(const CLocaleScope&) = delete;

  private:
    locale_t before_;
};
