#pragma once

#include <clocale>

/**
 * While it lives the calling thread goes by the rules of the C locale, whatever locale the program or the
 * thread has: what travels to the array and back must not follow the user's decimal sign or names of days.
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
