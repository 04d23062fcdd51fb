#include "apiMgmt/common/platform/cLocale.h"

namespace {

// Never freed: it is the same for all threads, to the end of the process.
locale_t CLocale() {
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
}

}  // namespace

CLocaleScope::CLocaleScope() : before_(uselocale(CLocale())) {}

CLocaleScope::~CLocaleScope() {
    uselocale(before_);
}
