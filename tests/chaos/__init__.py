"""A long run of the whole system under faults; see README.md."""
