#include "apiMgmt/common/platform/cLocale.h"

namespace {

// Shared by all threads until the process exits, so never freed.
locale_t CLocale() {
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
}

}  // namespace

CLocaleScope::CLocaleScope() : before_(uselocale(CLocale())) {}

CLocaleScope::~CLocaleScope() {
    uselocale(before_);
}
