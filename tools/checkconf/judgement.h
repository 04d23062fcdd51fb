#pragma once

namespace checkconf {

/** What is known of a question: some answers stand in files that are not read, or with a name service. */
enum class Judgement { kNo, kYes, kNotLookedAt };

}  // namespace checkconf
