"""A long run of everything under faults; README.md tells of it."""
