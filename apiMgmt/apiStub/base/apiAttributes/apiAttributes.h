#pragma once

/** Includes all kinds of attributes. */

#include "apiMgmt/apiStub/base/apiAttributes/addressApiAttributes.h"
#include "apiMgmt/apiStub/base/apiAttributes/numberApiAttributes.h"
#include "apiMgmt/apiStub/base/apiAttributes/objectApiAttributes.h"
#include "apiMgmt/apiStub/base/apiAttributes/textApiAttributes.h"
#include "apiMgmt/apiStub/base/apiAttributes/valueApiAttributes.h"
